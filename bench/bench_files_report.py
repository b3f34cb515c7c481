#!/usr/bin/python3
"""Puts the JSON lines of bench_files and ezdxf_files.py together into one table and one file.

Usage: bench_files_report.py DIR SIZE... > table
DIR holds baseline.json and, for each SIZE (an entity count), save-SIZE.json, load-SIZE.json
and, when ezdxf ran, ezdxf-SIZE.json and plain-SIZE.json. Writes DIR/bench-files.json with
every figure and prints the table with the targets checked.
"""

import json
import os
import sys

# Targets the figures are checked against.
MIN_EZDXF_FACTOR = 50.0  # our entities/s over ezdxf's, for save and for load
MAX_BOUND_FACTOR = 2.0  # our time over the to_chars / from_chars time of the same numbers
MAX_GROWTH = 11.0  # t(largest) / t(smallest) for 10x the entities


def load(directory, name):
    path = os.path.join(directory, name)
    if not os.path.exists(path):
        return None
    with open(path) as f:
        lines = f.read().strip().splitlines()
    # An empty file is a run that failed or has not finished.
    return json.loads(lines[-1]) if lines else None


def label(size):
    if size % 1000000 == 0:
        return "%dM" % (size // 1000000)
    if size % 1000 == 0:
        return "%dk" % (size // 1000)
    return str(size)


def figures(directory, size, baseline_kib):
    save = load(directory, "save-%d.json" % size)
    read = load(directory, "load-%d.json" % size)
    if save is None or read is None:
        return None
    mb = save["bytes"] / 1e6
    f = {
        "entities": size,
        "mix": {k: read[k] for k in ("geo_rect", "geo_3d_rect", "geo_triangle", "geo_polygon",
                                     "lines", "polylines")},
        "file_mb": mb,
        "build_s": save["build_s"],
        "save_s": save["save_s"],
        "save_entities_per_s": size / save["save_s"],
        "save_mb_per_s": mb / save["save_s"],
        "load_s": read["load_s"],
        "load_entities_per_s": size / read["load_s"],
        "load_mb_per_s": mb / read["load_s"],
        "build_bytes_per_entity": (save["peak_build_rss_kib"] - baseline_kib) * 1024.0 / size,
        "save_peak_bytes_per_entity": (save["peak_save_rss_kib"] - baseline_kib) * 1024.0 / size,
        "load_bytes_per_entity": (read["peak_load_rss_kib"] - baseline_kib) * 1024.0 / size,
        "numbers": save["reals"] + save["integers"] + save["handles"],
        "reals": save["reals"],
        "integers": save["integers"],
        "handles": save["handles"],
        "binary_bytes": save["binary_bytes"],
        "to_chars_s": save["to_chars_s"],
        "from_chars_s": save["from_chars_s"],
        "hex_encode_s": save["hex_encode_s"],
        "hex_decode_s": save["hex_decode_s"],
        "save_cpu_s": save["save_cpu_s"],
        "load_cpu_s": read["load_cpu_s"],
    }
    f["format_bound_s"] = f["to_chars_s"] + f["hex_encode_s"]
    f["parse_bound_s"] = f["from_chars_s"] + f["hex_decode_s"]
    f["save_over_bound"] = f["save_s"] / f["format_bound_s"]
    f["load_over_bound"] = f["load_s"] / f["parse_bound_s"]
    f["save_cpu_over_bound"] = f["save_cpu_s"] / f["format_bound_s"]
    f["load_cpu_over_bound"] = f["load_cpu_s"] / f["parse_bound_s"]
    if read["entities"] != size:
        raise SystemExit("load-%d.json: %d entities came back, not %d"
                         % (size, read["entities"], size))
    ez = load(directory, "ezdxf-%d.json" % size)
    plain = load(directory, "plain-%d.json" % size)
    if ez is not None and plain is not None:
        f["ezdxf_entities"] = ez["entities"]
        f["ezdxf_file_mb"] = plain["bytes"] / 1e6
        f["ezdxf_load_s"] = ez["load_s"]
        f["ezdxf_save_s"] = ez["save_s"]
        f["ezdxf_load_entities_per_s"] = ez["entities"] / ez["load_s"]
        f["ezdxf_save_entities_per_s"] = ez["entities"] / ez["save_s"]
        f["ezdxf_peak_rss_mib"] = ez["peak_rss_kib"] / 1024.0
        # ezdxf's entities/s count the entities of the plain export (survey shapes exploded
        # into several standard entities each), which favours ezdxf; the time ratio for the
        # same drawing is given beside it.
        f["save_time_vs_ezdxf"] = ez["save_s"] / f["save_s"]
        f["load_time_vs_ezdxf"] = ez["load_s"] / f["load_s"]
        f["save_vs_ezdxf"] = f["save_entities_per_s"] / f["ezdxf_save_entities_per_s"]
        f["load_vs_ezdxf"] = f["load_entities_per_s"] / f["ezdxf_load_entities_per_s"]
    return f


def main(argv):
    if len(argv) < 3:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    directory = argv[1]
    sizes = sorted(int(s) for s in argv[2:])
    baseline = load(directory, "baseline.json")
    if baseline is None:
        raise SystemExit("no baseline.json in " + directory)
    runs = {}
    for size in sizes:
        f = figures(directory, size, baseline["peak_rss_kib"])
        if f is not None:
            runs[size] = f
    result = {"baseline_rss_kib": baseline["peak_rss_kib"],
              "runs": {label(s): f for s, f in runs.items()}}
    done = sorted(runs)
    if len(done) >= 2:
        small, large = done[0], done[-1]
        result["growth"] = {
            "from": label(small), "to": label(large),
            "save": runs[large]["save_s"] / runs[small]["save_s"],
            "load": runs[large]["load_s"] / runs[small]["load_s"],
        }
    with open(os.path.join(directory, "bench-files.json"), "w") as out:
        json.dump(result, out, indent=2)
        out.write("\n")

    rows = [
        ("survey shapes (rect/3d rect/triangle/polygon)",
         lambda f: "/".join(str(f["mix"][k]) for k in
                            ("geo_rect", "geo_3d_rect", "geo_triangle", "geo_polygon"))),
        ("standard entities (lines/polylines)",
         lambda f: "%d/%d" % (f["mix"]["lines"], f["mix"]["polylines"])),
        ("file size (MB)", lambda f: "%.1f" % f["file_mb"]),
        ("build (s)", lambda f: "%.3f" % f["build_s"]),
        ("save (s)", lambda f: "%.3f" % f["save_s"]),
        ("save, CPU time (s)", lambda f: "%.3f" % f["save_cpu_s"]),
        ("save (entities/s)", lambda f: "%.0f" % f["save_entities_per_s"]),
        ("save (MB/s)", lambda f: "%.1f" % f["save_mb_per_s"]),
        ("load (s)", lambda f: "%.3f" % f["load_s"]),
        ("load, CPU time (s)", lambda f: "%.3f" % f["load_cpu_s"]),
        ("load (entities/s)", lambda f: "%.0f" % f["load_entities_per_s"]),
        ("load (MB/s)", lambda f: "%.1f" % f["load_mb_per_s"]),
        ("peak memory, built drawing (bytes/entity)",
         lambda f: "%.0f" % f["build_bytes_per_entity"]),
        ("peak memory, built + saved (bytes/entity)",
         lambda f: "%.0f" % f["save_peak_bytes_per_entity"]),
        ("peak memory, loaded (bytes/entity)", lambda f: "%.0f" % f["load_bytes_per_entity"]),
        ("numbers in the file (reals+integers+handles)",
         lambda f: "%d+%d+%d" % (f["reals"], f["integers"], f["handles"])),
        ("binary bytes in the file (hex)", lambda f: "%d" % f["binary_bytes"]),
        ("to_chars of the numbers + hex encoding (s)",
         lambda f: "%.4f+%.4f" % (f["to_chars_s"], f["hex_encode_s"])),
        ("from_chars of the numbers + hex decoding (s)",
         lambda f: "%.4f+%.4f" % (f["from_chars_s"], f["hex_decode_s"])),
        ("save / format bound (target <= %g; CPU)" % MAX_BOUND_FACTOR,
         lambda f: "%.1f (%.1f)" % (f["save_over_bound"], f["save_cpu_over_bound"])),
        ("load / parse bound (target <= %g; CPU)" % MAX_BOUND_FACTOR,
         lambda f: "%.1f (%.1f)" % (f["load_over_bound"], f["load_cpu_over_bound"])),
        ("ezdxf: entities in the plain export",
         lambda f: "%d" % f["ezdxf_entities"] if "ezdxf_entities" in f else "-"),
        ("ezdxf: plain export size (MB)",
         lambda f: "%.1f" % f["ezdxf_file_mb"] if f.get("ezdxf_file_mb") else "-"),
        ("ezdxf: readfile (s)", lambda f: "%.2f" % f["ezdxf_load_s"] if "ezdxf_load_s" in f else "-"),
        ("ezdxf: saveas (s)", lambda f: "%.2f" % f["ezdxf_save_s"] if "ezdxf_save_s" in f else "-"),
        ("ezdxf: readfile (entities/s)",
         lambda f: "%.0f" % f["ezdxf_load_entities_per_s"] if "ezdxf_load_s" in f else "-"),
        ("ezdxf: saveas (entities/s)",
         lambda f: "%.0f" % f["ezdxf_save_entities_per_s"] if "ezdxf_save_s" in f else "-"),
        ("ezdxf: peak RSS (MiB)",
         lambda f: "%.0f" % f["ezdxf_peak_rss_mib"] if "ezdxf_peak_rss_mib" in f else "-"),
        ("save entities/s over ezdxf's (target >= %g)" % MIN_EZDXF_FACTOR,
         lambda f: "%.1f" % f["save_vs_ezdxf"] if "save_vs_ezdxf" in f else "-"),
        ("load entities/s over ezdxf's (target >= %g)" % MIN_EZDXF_FACTOR,
         lambda f: "%.1f" % f["load_vs_ezdxf"] if "load_vs_ezdxf" in f else "-"),
        ("ezdxf's saveas time over our save, same drawing",
         lambda f: "%.1f" % f["save_time_vs_ezdxf"] if "save_vs_ezdxf" in f else "-"),
        ("ezdxf's readfile time over our load, same drawing",
         lambda f: "%.1f" % f["load_time_vs_ezdxf"] if "load_vs_ezdxf" in f else "-"),
    ]
    headers = ["entities"] + [label(s) for s in done]
    table = [[name] + [render(runs[s]) for s in done] for name, render in rows]
    widths = [max(len(r[i]) for r in table + [headers]) for i in range(len(headers))]
    line = lambda cells: "| " + " | ".join(
        c.ljust(widths[i]) if i == 0 else c.rjust(widths[i]) for i, c in enumerate(cells)) + " |"
    print(line(headers))
    print("|" + "|".join("-" * (w + 2) for w in widths) + "|")
    for r in table:
        print(line(r))
    print()
    print("baseline (platform + module loaded): %d KiB peak RSS" % baseline["peak_rss_kib"])

    # Targets.
    checks = []
    for s in done:
        f = runs[s]
        checks.append(("%s save within %gx of the to_chars bound" % (label(s), MAX_BOUND_FACTOR),
                       f["save_over_bound"] <= MAX_BOUND_FACTOR))
        checks.append(("%s load within %gx of the from_chars bound" % (label(s), MAX_BOUND_FACTOR),
                       f["load_over_bound"] <= MAX_BOUND_FACTOR))
        if "save_vs_ezdxf" in f:
            checks.append(("%s save >= %gx ezdxf" % (label(s), MIN_EZDXF_FACTOR),
                           f["save_vs_ezdxf"] >= MIN_EZDXF_FACTOR))
            checks.append(("%s load >= %gx ezdxf" % (label(s), MIN_EZDXF_FACTOR),
                           f["load_vs_ezdxf"] >= MIN_EZDXF_FACTOR))
    if "growth" in result:
        g = result["growth"]
        print("growth t(%s)/t(%s): save %.2f, load %.2f (target <= %g)"
              % (g["to"], g["from"], g["save"], g["load"], MAX_GROWTH))
        checks.append(("growth of save <= %g" % MAX_GROWTH, g["save"] <= MAX_GROWTH))
        checks.append(("growth of load <= %g" % MAX_GROWTH, g["load"] <= MAX_GROWTH))
    for name, ok in checks:
        print("%-4s %s" % ("ok" if ok else "MISS", name))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
