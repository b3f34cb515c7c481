"""What the outside checks of drawing files share: loading a file the way ezdxf's recovery
reader does, drawing it with ezdxf's drawing add-on onto a picture of a given size and view,
and reading pictures back as grids of ink.

The checks run with the system's Python and the Debian packages python3-ezdxf and
python3-matplotlib. A missing package is a failure, never a skip: a check that silently does
nothing would hide exactly the faults it exists to find.
"""

import sys


def fail(message):
    """Ends the check with a non-zero status and the reason on stderr."""
    print(f"FAIL: {message}", file=sys.stderr)
    sys.exit(1)


try:
    import ezdxf
    from ezdxf import recover
    from ezdxf import bbox
    import matplotlib

    # Headless: no display is needed or wanted.
    matplotlib.use("Agg")
    import matplotlib.image
    import matplotlib.pyplot as plt
    from matplotlib.font_manager import FontProperties
    import numpy
    from ezdxf.addons.drawing import Frontend, RenderContext
    from ezdxf.addons.drawing.config import Configuration, ProxyGraphicPolicy
    from ezdxf.addons.drawing.matplotlib import MatplotlibBackend
except ImportError as error:
    fail(f"{error}; install python3-ezdxf and python3-matplotlib (scripts/setup-debian.sh)")

# A pixel counts as ink when some channel is darker than this (0 black, 1 white): the faint
# edge of anti-aliasing does not count, light colours such as yellow do.
INK_LEVEL = 0.75
TEXT_FONT = "WenQuanYi Micro Hei"


def load(path):
    """The document read with the recovery reader, and the recovery auditor's findings."""
    try:
        doc, auditor = recover.readfile(path)
    except IOError as error:
        fail(f"cannot read {path}: {error}")
    except ezdxf.DXFStructureError as error:
        fail(f"{path} is not a valid DXF file: {error}")
    return doc, auditor


def describe_errors(auditor):
    return "; ".join(f"{error.code}: {error.message}" for error in auditor.errors)


def view_box(doc, margin, width, height):
    """The drawing's extents fitted into a width x height picture with margin pixels free on
    every side, centred, square pixels: (x0, x1, y0, y1) world limits of the whole picture, as
    the project's renderer chooses its view. Proxies count through their graphics."""
    box = bbox.extents(doc.modelspace(), fast=True)
    if not box.has_data:
        fail("the drawing has no extents: nothing to draw")
    (min_x, min_y, _), (max_x, max_y, _) = box.extmin, box.extmax
    room_x = max(1.0, width - 2.0 * margin)
    room_y = max(1.0, height - 2.0 * margin)
    extent_x = max(max_x - min_x, 1e-9)
    extent_y = max(max_y - min_y, 1e-9)
    scale = min(room_x / extent_x, room_y / extent_y)
    center_x = 0.5 * (min_x + max_x)
    center_y = 0.5 * (min_y + max_y)
    half_w = 0.5 * width / scale
    half_h = 0.5 * height / scale
    return (center_x - half_w, center_x + half_w, center_y - half_h, center_y + half_h)


def render_with_ezdxf(doc, path, width, height, box):
    """Draws model space with ezdxf (proxy graphics shown) on white into a PNG of exactly
    width x height pixels whose edges are the box's limits. Returns the pixels."""
    dpi = 100
    fig = plt.figure(figsize=(width / dpi, height / dpi), dpi=dpi)
    try:
        ax = fig.add_axes((0, 0, 1, 1))
        context = RenderContext(doc)
        msp = doc.modelspace()
        context.set_current_layout(msp)
        # White paper: ACI 7 becomes black, as in the project's pictures. Passing the
        # properties keeps the layer table set up above.
        properties = context.current_layout_properties
        properties.set_colors("#ffffff")
        config = Configuration.defaults().with_changes(
            proxy_graphic_policy=ProxyGraphicPolicy.SHOW
        )
        # The CJK-capable font the project's renderer uses, so Chinese texts show in both.
        backend = MatplotlibBackend(
            ax, adjust_figure=False, font=FontProperties(family=TEXT_FONT)
        )
        Frontend(context, backend, config).draw_layout(
            msp, finalize=True, layout_properties=properties
        )
        x0, x1, y0, y1 = box
        ax.set_aspect("auto")
        ax.set_xlim(x0, x1)
        ax.set_ylim(y0, y1)
        ax.set_axis_off()
        fig.savefig(path, dpi=dpi, facecolor="white")
    finally:
        plt.close(fig)
    pixels = read_png(path)
    if pixels.shape[:2] != (height, width):
        fail(f"ezdxf's picture is {pixels.shape[1]} x {pixels.shape[0]}, not {width} x {height}")
    return pixels


def read_png(path):
    try:
        pixels = matplotlib.image.imread(path)
    except (OSError, ValueError) as error:
        fail(f"cannot read the picture {path}: {error}")
    if pixels.ndim != 3 or pixels.shape[2] < 3:
        fail(f"{path} is not an RGB picture")
    return pixels


def ink_mask(pixels):
    """True where a pixel is ink (not background) on a white picture."""
    return pixels[:, :, :3].min(axis=2) < INK_LEVEL


def to_pixels(box, width, height, x, y):
    """World (x, y) to pixel column and row in a picture whose edges are the box's limits."""
    x0, x1, y0, y1 = box
    column = (x - x0) / (x1 - x0) * width
    row = (y1 - y) / (y1 - y0) * height
    return column, row


def proxy_boxes(doc):
    """(handle, world box) for each proxy entity of model space that carries proxy graphics;
    fails when graphics are present but ezdxf decodes nothing drawable from them. A proxy
    without graphics (an entity that draws nothing) is left out."""
    boxes = []
    for entity in doc.modelspace().query("ACAD_PROXY_ENTITY"):
        if not entity.proxy_graphic:
            continue
        try:
            pieces = list(entity.virtual_entities())
        except Exception as error:  # ezdxf raises several kinds for bad metafiles
            fail(f"proxy {entity.dxf.handle}: ezdxf cannot decode its graphics: {error}")
        if not pieces:
            fail(f"proxy {entity.dxf.handle} has graphics but ezdxf draws nothing from them")
        extents = bbox.extents(pieces, fast=True)
        if not extents.has_data:
            fail(f"proxy {entity.dxf.handle}'s graphics have no extents")
        boxes.append((entity.dxf.handle, extents))
    return boxes
