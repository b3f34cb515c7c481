#!/usr/bin/python3
"""Audits a DXF file with ezdxf and checks what model space holds.

    audit_dxf.py FILE [--count TYPE=N ...] [--with-graphics N]
    audit_dxf.py --write-sample FILE


Fails when the recovery reader or the auditor report any error, when model space does not
hold exactly N entities of each TYPE given (N may be 0: the type must be absent), or when the
number of proxy entities carrying proxy graphics (group 160) is not the one given. With
--write-sample it writes a small drawing of ezdxf's own instead (a line on a layer and linetype
of its own, a polyline with bulges and widths, an arc, a point), for reading tests.
"""

import argparse
import collections
import sys

import dxfcheck


def type_count(text):
    name, _, number = text.partition("=")
    if not name or not number.isdigit():
        raise argparse.ArgumentTypeError(f"expected TYPE=N, got {text!r}")
    return name.upper(), int(number)


def write_sample(path):
    doc = dxfcheck.ezdxf.new("R2018")
    doc.layers.add("Walls", color=3)
    doc.linetypes.add("DASHED2", pattern=[0.75, 0.5, -0.25], description="Dashed __ __")
    msp = doc.modelspace()
    msp.add_line((0, 0), (10, 5), dxfattribs={"layer": "Walls", "linetype": "DASHED2"})
    msp.add_lwpolyline([(0, 0, 0, 0, 0.5), (5, 0, 0.2, 0.2, 0), (5, 5, 0, 0, 0)],
                       format="xyseb", dxfattribs={"color": 1})
    msp.add_arc((1, 1), 2, 30, 120)
    msp.add_point((3, 4))
    doc.saveas(path)


def main():
    if len(sys.argv) == 3 and sys.argv[1] == "--write-sample":
        write_sample(sys.argv[2])
        return
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("dxf")
    parser.add_argument("--count", type=type_count, action="append", default=[])
    parser.add_argument("--with-graphics", type=int, default=None)
    args = parser.parse_args()

    doc, recovery = dxfcheck.load(args.dxf)
    if recovery.has_errors:
        dxfcheck.fail(f"the recovery reader found errors: {dxfcheck.describe_errors(recovery)}")
    auditor = doc.audit()
    if auditor.has_errors:
        dxfcheck.fail(f"the audit found errors: {dxfcheck.describe_errors(auditor)}")

    counts = collections.Counter(entity.dxftype() for entity in doc.modelspace())
    print(f"{args.dxf}: {doc.dxfversion}, {len(recovery.fixes) + len(auditor.fixes)} fixes, "
          f"model space {dict(sorted(counts.items()))}")
    problems = [
        f"{name}: {counts.get(name, 0)} instead of {expected}"
        for name, expected in args.count
        if counts.get(name, 0) != expected
    ]
    if args.with_graphics is not None:
        with_graphics = sum(
            1 for entity in doc.modelspace().query("ACAD_PROXY_ENTITY") if entity.proxy_graphic
        )
        if with_graphics != args.with_graphics:
            problems.append(
                f"proxies with graphics: {with_graphics} instead of {args.with_graphics}"
            )
    if problems:
        dxfcheck.fail("; ".join(problems))
    print("OK")


if __name__ == "__main__":
    main()
