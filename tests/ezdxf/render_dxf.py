#!/usr/bin/python3
"""Draws a DXF file with ezdxf's drawing add-on (matplotlib, headless) and checks that the
proxies' graphics show.

    render_dxf.py FILE OUT.png [--width W] [--height H]

Every proxy entity that carries graphics must have ink in the part of the picture its
graphics cover; the picture as a whole must not be blank.
"""

import argparse

import dxfcheck

# Ink a proxy's box must hold, as a fraction of the box's outline length in pixels: a shape's
# outline alone (one-pixel lines) covers about that much, a missing shape nothing.
MIN_INK_PER_OUTLINE_PIXEL = 0.5


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("dxf")
    parser.add_argument("png")
    parser.add_argument("--width", type=int, default=1200)
    parser.add_argument("--height", type=int, default=800)
    parser.add_argument("--margin", type=float, default=10.0)
    args = parser.parse_args()

    doc, _ = dxfcheck.load(args.dxf)
    box = dxfcheck.view_box(doc, args.margin, args.width, args.height)
    pixels = dxfcheck.render_with_ezdxf(doc, args.png, args.width, args.height, box)
    ink = dxfcheck.ink_mask(pixels)
    if not ink.any():
        dxfcheck.fail(f"ezdxf drew nothing: {args.png} is blank")

    proxies = dxfcheck.proxy_boxes(doc)
    if not proxies:
        dxfcheck.fail("the drawing has no proxy entity with graphics")
    problems = []
    for handle, extents in proxies:
        (x0, y0, _), (x1, y1, _) = extents.extmin, extents.extmax
        left, top = dxfcheck.to_pixels(box, args.width, args.height, x0, y1)
        right, bottom = dxfcheck.to_pixels(box, args.width, args.height, x1, y0)
        # A pixel of slack for lines on the box's edge.
        c0, c1 = max(0, int(left) - 1), min(args.width, int(right) + 2)
        r0, r1 = max(0, int(top) - 1), min(args.height, int(bottom) + 2)
        found = int(ink[r0:r1, c0:c1].sum())
        outline = 2 * ((c1 - c0) + (r1 - r0))
        if found < MIN_INK_PER_OUTLINE_PIXEL * outline:
            problems.append(f"proxy {handle}: {found} ink pixels in its {c1 - c0} x {r1 - r0} box")
    print(f"{args.png}: {len(proxies)} proxies with graphics, {int(ink.sum())} ink pixels")
    if problems:
        dxfcheck.fail("proxy graphics missing from ezdxf's picture: " + "; ".join(problems))
    print("OK")


if __name__ == "__main__":
    main()
