#!/usr/bin/python3
"""Compares ezdxf's picture of a DXF file with the project's own picture of it.

    compare_render.py FILE OURS.png OUT.png [--margin M] [--cell C] [--threshold T]

ezdxf draws the file at the size of OURS.png with the view the project's renderer takes (the
drawing's extents fitted in with the margin, centred, white paper); OUT.png receives ezdxf's
picture. Both pictures are cut into square cells of C pixels and a cell counts as occupied
when it holds ink. The pictures agree as far as the occupied cells of each are matched by ink
in the same or a neighbouring cell of the other (the neighbours absorb the difference in line
widths and text fonts). Both matched fractions must reach the threshold.
"""

import argparse

import dxfcheck
import numpy

# Why 0.95: lines of either picture land in the same or the next cell whatever their width;
# what stays unmatched is only what one program draws and the other does not (text set in a
# different font, a hatch pattern ezdxf does not draw), about 1 to 2 percent of the cells of
# the sample drawing. One shape of its twelve missing from either picture leaves its whole
# outline unmatched, about 8 percent of the occupied cells, enough to fail.
DEFAULT_THRESHOLD = 0.95
# Cells of 20 pixels: coarse enough that a line a pixel or two apart lands in the same cell or
# the next, fine enough that a shape's outline occupies a run of its own cells.
DEFAULT_CELL = 20


def occupancy(ink, cell):
    rows = ink.shape[0] // cell
    columns = ink.shape[1] // cell
    trimmed = ink[: rows * cell, : columns * cell]
    counts = trimmed.reshape(rows, cell, columns, cell).sum(axis=(1, 3))
    # Two pixels, so a stray anti-aliased speck of a line in the next cell does not count.
    return counts >= 2


def dilate(grid):
    grown = grid.copy()
    padded = numpy.pad(grid, 1)
    for dy in (-1, 0, 1):
        for dx in (-1, 0, 1):
            grown |= padded[1 + dy : 1 + dy + grid.shape[0], 1 + dx : 1 + dx + grid.shape[1]]
    return grown


def matched_fraction(grid, other):
    occupied = int(grid.sum())
    if occupied == 0:
        return 0.0
    return float((grid & dilate(other)).sum()) / occupied


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("dxf")
    parser.add_argument("ours")
    parser.add_argument("out")
    parser.add_argument("--margin", type=float, default=10.0)
    parser.add_argument("--cell", type=int, default=DEFAULT_CELL)
    parser.add_argument("--threshold", type=float, default=DEFAULT_THRESHOLD)
    args = parser.parse_args()

    ours = dxfcheck.read_png(args.ours)
    height, width = ours.shape[:2]
    if ours.shape[2] == 4 and ours[:, :, 3].min() < 1.0:
        dxfcheck.fail(f"{args.ours} is not opaque")
    doc, _ = dxfcheck.load(args.dxf)
    box = dxfcheck.view_box(doc, args.margin, width, height)
    theirs = dxfcheck.render_with_ezdxf(doc, args.out, width, height, box)

    ours_grid = occupancy(dxfcheck.ink_mask(ours), args.cell)
    theirs_grid = occupancy(dxfcheck.ink_mask(theirs), args.cell)
    if not ours_grid.any() or not theirs_grid.any():
        dxfcheck.fail(
            f"a picture is blank: ours {int(ours_grid.sum())} cells, "
            f"ezdxf's {int(theirs_grid.sum())} cells"
        )
    ours_matched = matched_fraction(ours_grid, theirs_grid)
    theirs_matched = matched_fraction(theirs_grid, ours_grid)
    exact = float((ours_grid & theirs_grid).sum()) / float((ours_grid | theirs_grid).sum())
    print(
        f"{width} x {height} px in {args.cell}-pixel cells: ours {int(ours_grid.sum())} "
        f"occupied, ezdxf's {int(theirs_grid.sum())}; matched {ours_matched:.3f} of ours, "
        f"{theirs_matched:.3f} of ezdxf's; same cells {exact:.3f}"
    )
    if min(ours_matched, theirs_matched) < args.threshold:
        dxfcheck.fail(
            f"the pictures disagree: matched {min(ours_matched, theirs_matched):.3f} "
            f"< {args.threshold} (compare {args.ours} with {args.out})"
        )
    print("OK")


if __name__ == "__main__":
    main()
