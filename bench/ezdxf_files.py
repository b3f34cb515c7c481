#!/usr/bin/python3
"""The comparison for bench_files: ezdxf reading a DXF file and writing it back.

Usage: ezdxf_files.py IN OUT
Times ezdxf.readfile(IN) and doc.saveas(OUT), counts the entities of model space and prints
one JSON object (the same fields bench_files prints for its own save and load).
"""

import json
import resource
import sys
import time


def main(argv):
    if len(argv) != 3:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    import ezdxf

    source, target = argv[1], argv[2]
    start = time.perf_counter()
    doc = ezdxf.readfile(source)
    read_s = time.perf_counter() - start
    entities = len(doc.modelspace())
    start = time.perf_counter()
    doc.saveas(target)
    save_s = time.perf_counter() - start
    print(json.dumps({
        "mode": "ezdxf",
        "version": ezdxf.__version__,
        "entities": entities,
        "load_s": read_s,
        "save_s": save_s,
        # ru_maxrss is in KiB on Linux.
        "peak_rss_kib": resource.getrusage(resource.RUSAGE_SELF).ru_maxrss,
    }))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
