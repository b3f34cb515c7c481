"""Decodes a proxy-graphics metafile with ezdxf's own decoder and prints what it makes of it.

Usage: proxy_graphics_check.py METAFILE [--layers NAME,...] [--linetypes NAME,...]

The metafile is decoded against a new drawing whose layer table is "0", "Defpoints" and then
the --layers names, and whose linetype table is ByBlock, ByLayer, Continuous and then the
--linetypes names, so layer and linetype indices resolve as in a drawing with those tables.

Prints one "key value" line per field: the table orders used ("layers.2 Survey"), and the
entities in the order decoded ("entities.0.type CIRCLE"), each with its type, graphic
properties and the coordinates that define it, three numbers to a point (world coordinates
where ezdxf offers them). Lists also print their length ("entities.count 8"). Exit status 0
on success, 2 when ezdxf fails to decode the metafile.
"""

import argparse
import sys

import ezdxf
from ezdxf.proxygraphic import ProxyGraphic


def vec(v):
    return [float(v[0]), float(v[1]), float(v[2])]


def describe(entity):
    dxf = entity.dxf
    kind = entity.dxftype()
    out = {
        "type": kind,
        "layer": dxf.get("layer", "0"),
        "color": dxf.get("color", 256),
        "true_color": dxf.get("true_color", None),
        "linetype": dxf.get("linetype", "BYLAYER"),
        "lineweight": dxf.get("lineweight", -1),
        "ltscale": dxf.get("ltscale", 1.0),
    }
    if kind == "CIRCLE":
        out["center"] = vec(dxf.center)
        out["radius"] = dxf.radius
        out["extrusion"] = vec(dxf.extrusion)
    elif kind == "ARC":
        out["center"] = vec(entity.ocs().to_wcs(dxf.center))
        out["radius"] = dxf.radius
        out["extrusion"] = vec(dxf.extrusion)
        out["start_angle"] = dxf.start_angle
        out["end_angle"] = dxf.end_angle
        out["start_point"] = vec(entity.start_point)
        out["end_point"] = vec(entity.end_point)
    elif kind == "POLYLINE":
        out["vertices"] = [vec(v.dxf.location) for v in entity.vertices]
        out["closed"] = entity.is_closed
    elif kind == "HATCH":
        path = entity.paths[0]
        out["vertices"] = [[float(v[0]), float(v[1]), 0.0] for v in path.vertices]
        out["elevation"] = vec(dxf.elevation)
    elif kind == "POINT":
        out["location"] = vec(dxf.location)
    elif kind == "TEXT":
        out["text"] = dxf.text
        out["insert"] = vec(dxf.insert)
        out["height"] = dxf.height
        out["width"] = dxf.width
        out["rotation"] = dxf.rotation
        out["oblique"] = dxf.oblique
        out["extrusion"] = vec(dxf.extrusion)
    elif kind in ("XLINE", "RAY"):
        out["start"] = vec(dxf.start)
        out["unit_vector"] = vec(dxf.unit_vector)
    return out


def emit(key, value):
    if isinstance(value, dict):
        for name, item in value.items():
            emit(f"{key}.{name}" if key else name, item)
    elif isinstance(value, list) and (not value or not isinstance(value[0], float)):
        print(f"{key}.count {len(value)}")
        for index, item in enumerate(value):
            emit(f"{key}.{index}", item)
    elif isinstance(value, list):
        print(key, " ".join(repr(x) for x in value))
    else:
        print(key, int(value) if isinstance(value, bool) else value)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("metafile")
    parser.add_argument("--layers", default="")
    parser.add_argument("--linetypes", default="")
    args = parser.parse_args()
    sys.stdout.reconfigure(encoding="utf-8")

    doc = ezdxf.new("R2018")
    for name in filter(None, args.layers.split(",")):
        if not doc.layers.has_entry(name):
            doc.layers.new(name)
    for name in filter(None, args.linetypes.split(",")):
        if not doc.linetypes.has_entry(name):
            doc.linetypes.new(name, dxfattribs={"pattern": [1.0, 0.5, -0.5]})

    with open(args.metafile, "rb") as f:
        data = f.read()
    result = {
        "layers": [layer.dxf.name for layer in doc.layers],
        "linetypes": [linetype.dxf.name for linetype in doc.linetypes],
    }
    try:
        result["entities"] = [describe(e) for e in ProxyGraphic(data, doc).virtual_entities()]
    except Exception as error:  # the decoder's own failure is the finding
        result["error"] = str(error)
        emit("", result)
        return 2
    emit("", result)
    return 0


if __name__ == "__main__":
    sys.exit(main())
