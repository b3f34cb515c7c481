"""Outside check of a drawing file: loads it with ezdxf, runs its auditor and prints one JSON
object with the audit's error and fix counts, the entity counts by type of model space and
paper space, and the layer and linetype names.

    ezdxf_audit.py FILE          check FILE
    ezdxf_audit.py --make FILE   write a small drawing of ezdxf's own (lines, a polyline with
                                 bulges, an arc, a layer) to FILE, for reading tests
"""

import json
import sys

import ezdxf


def make(path):
    doc = ezdxf.new("R2018")
    doc.layers.add("Walls", color=3)
    doc.linetypes.add("DASHED2", pattern=[0.75, 0.5, -0.25], description="Dashed __ __")
    msp = doc.modelspace()
    msp.add_line((0, 0), (10, 5), dxfattribs={"layer": "Walls", "linetype": "DASHED2"})
    msp.add_lwpolyline([(0, 0, 0, 0, 0.5), (5, 0, 0.2, 0.2, 0), (5, 5, 0, 0, 0)],
                       format="xyseb", dxfattribs={"color": 1})
    msp.add_arc((1, 1), 2, 30, 120)
    msp.add_point((3, 4))
    doc.saveas(path)


def check(path):
    doc = ezdxf.readfile(path)
    auditor = doc.audit()
    counts = {}
    for layout in (doc.modelspace(), doc.layouts.active_layout()):
        for entity in layout:
            counts[entity.dxftype()] = counts.get(entity.dxftype(), 0) + 1
    print(json.dumps({
        "version": doc.dxfversion,
        "errors": len(auditor.errors),
        "fixes": len(auditor.fixes),
        "messages": [str(e.message) for e in auditor.errors],
        "entities": counts,
        "layers": sorted(layer.dxf.name for layer in doc.layers),
        "linetypes": sorted(lt.dxf.name for lt in doc.linetypes),
    }, sort_keys=True))


if __name__ == "__main__":
    if len(sys.argv) == 3 and sys.argv[1] == "--make":
        make(sys.argv[2])
    elif len(sys.argv) == 2:
        check(sys.argv[1])
    else:
        sys.exit(__doc__)
