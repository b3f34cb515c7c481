#!/usr/bin/python3
"""Audits a DXF file with ezdxf and checks what model space holds.

    audit_dxf.py FILE [--count TYPE=N ...] [--with-graphics N]

Fails when the recovery reader or the auditor report any error, when model space does not
hold exactly N entities of each TYPE given (N may be 0: the type must be absent), or when the
number of proxy entities carrying proxy graphics (group 160) is not the one given.
"""

import argparse
import collections

import dxfcheck


def type_count(text):
    name, _, number = text.partition("=")
    if not name or not number.isdigit():
        raise argparse.ArgumentTypeError(f"expected TYPE=N, got {text!r}")
    return name.upper(), int(number)


def main():
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
