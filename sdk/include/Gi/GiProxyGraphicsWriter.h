#ifndef OD_GI_PROXY_GRAPHICS_WRITER_H
#define OD_GI_PROXY_GRAPHICS_WRITER_H

/// A sink that turns what an entity draws into the graphics metafile a proxy entity carries
/// (DXF group 160 and the 310 lines after it), so that a reader without the entity's class
/// still shows the entity as it was drawn.

#include "DbObjectId.h"
#include "Gi/GiBaseSink.h"
#include "Gi/GiExtentsCollector.h"
#include "OdArray.h"
#include "OdString.h"

#include <vector>

class OdDbEntity;

/// The metafile: little-endian; a header (total size including the header, command count),
/// then commands of uint32 size (including the 8-byte head), uint32 opcode and a payload
/// padded to 4 bytes. An extents command comes first, then attribute commands and primitives.
///
/// Coordinates: model transforms are applied by the writer and every coordinate in the
/// metafile is a world coordinate; no matrix commands are written. Readers disagree on how
/// pushed matrices combine (ezdxf uses only the innermost one) and cannot place a circle under
/// a transform that makes it an ellipse, so resolving transforms here is what draws the same
/// everywhere. Circles, arcs and text keep their exact form under transforms that keep
/// circles circular in their plane (rotation, translation, uniform scaling, mirroring); under
/// other transforms circles and arcs are written as the polyline of their transformed
/// outline (128 segments per turn) and text as the transformed parallelogram of its line
/// (height, width factor and oblique angle adjusted), which is exact.
///
/// Arcs are written counter-clockwise (a negative sweep starts from the other end), since
/// readers build arc entities that always run counter-clockwise. The arc type is written as
/// given; readers that ignore it (ezdxf) draw sectors and chords without their closing lines.
///
/// Traits: before each primitive the writer sends what changed since the last primitive:
/// the colour (command 14 with the ACI index for index colours, by layer and by block; 22
/// with the packed value for true colours), the layer index, the linetype index, the
/// lineweight and the linetype scale. The colour is always sent before the first primitive,
/// because readers give pieces without one the colour of layer "0". Filled polygons are
/// wrapped in fill on / fill off, because readers apply fill to the next primitive only.
///
/// Layers and linetypes are numbered by their position in the drawing's table order (the
/// order the tables are written in), taken from the database or set by hand. A null layer or
/// one not in the order sends no layer command; a null linetype, the ByLayer linetype and one
/// not in the order are by layer (32767).
///
/// Refusals: a primitive with no vertices, a non-finite coordinate, radius, angle or size, a
/// zero normal, an arc start vector or text direction with no component in its plane, a
/// three-point circle through collinear points, or a transform that flattens it is written as
/// nothing and counted in skippedPrimitives(). A zero polyline normal is treated as no
/// normal. A three-point arc through collinear points is written as the polyline start, point,
/// end. A pop without a push is ignored.
class OdGiProxyGraphicsWriter : public OdGiBaseSink {
public:
  /// The command numbers of the metafile that this writer uses.
  enum Opcode : OdUInt32 {
    kExtents = 1,
    kCircle = 2,
    kCircularArc = 4,
    kPolyline = 6,
    kPolygon = 7,
    kXline = 12,
    kRay = 13,
    kColor = 14,
    kLayerIndex = 16,
    kLinetypeIndex = 18,
    kFill = 20,
    kTrueColor = 22,
    kLineWeight = 23,
    kLinetypeScale = 24,
    kPolylineWithNormal = 32,
    kUnicodeText = 36
  };
  /// The linetype index that means "by layer".
  static constexpr OdInt32 kByLayerIndex = 32767;
  /// Segments per full turn when a circle or arc has to be written as a polyline.
  static constexpr int kSegmentsPerTurn = 128;

  explicit OdGiProxyGraphicsWriter(OdDbDatabase* database = nullptr);

  /// The drawing whose layer and linetype tables number the layer and linetype commands, and
  /// what context()->database() reports. Forgets table orders computed from the previous one.
  void setDatabase(OdDbDatabase* database) override;
  /// Numbers layers by this order instead of the database's layer table (for a file whose
  /// tables are written in another order). An empty array goes back to the database's order.
  void setLayerOrder(const OdDbObjectIdArray& layerIds);
  /// As setLayerOrder, for linetypes.
  void setLinetypeOrder(const OdDbObjectIdArray& linetypeIds);
  /// Text extents in the extents command; an empty function restores the default.
  void setTextWidthFunction(OdGiExtentsCollector::TextWidthFunction function);

  /// Starts a new metafile for the entity: forgets what was written, takes the entity's
  /// colour, layer, linetype, linetype scale and lineweight as the traits, and draws it, in
  /// world drawing and, when that asks for it, viewport drawing through fixedViewport(). A
  /// null entity leaves an empty metafile.
  void draw(const OdDbEntity* entity);
  /// Forgets the commands, traits, model transforms and the skipped count.
  void reset();

  /// The metafile of everything drawn since the last reset; empty when nothing was drawn, so
  /// that a proxy without graphics carries no graphics groups.
  OdUInt8Array data() const;
  /// The same into out, reusing its room: for a writer that draws many entities in a row.
  void data(OdUInt8Array& out) const;
  /// Commands data() holds, the extents command included.
  OdUInt32 numCommands() const;
  /// The world box written in the extents command; invalid until something is drawn.
  const OdGeExtents3d& extents() const { return m_extents.extents(); }
  /// Primitives refused as degenerate since the last reset.
  unsigned skippedPrimitives() const { return m_skipped; }

  // OdGiCommonDraw, OdGiWorldDraw, OdGiViewportDraw.
  OdGiRegenType regenType() const override { return kOdGiSaveWorldDrawForProxy; }

  // OdGiGeometry.
  using OdGiBaseSink::circle;
  using OdGiBaseSink::circularArc;
  void circle(const OdGePoint3d& center, double radius, const OdGeVector3d& normal) override;
  void circularArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                   const OdGeVector3d& startVector, double sweepAngle,
                   OdGiArcType arcType = kOdGiArcSimple) override;
  void polyline(OdInt32 numVertices, const OdGePoint3d* vertexList,
                const OdGeVector3d* pNormal = nullptr, OdGsMarker baseSubEntMarker = -1) override;
  void polygon(OdInt32 numVertices, const OdGePoint3d* vertexList) override;
  void text(const OdGePoint3d& position, const OdGeVector3d& normal, const OdGeVector3d& direction,
            double height, double width, double oblique, const OdString& msg) override;
  void xline(const OdGePoint3d& firstPoint, const OdGePoint3d& secondPoint) override;
  void ray(const OdGePoint3d& basePoint, const OdGePoint3d& throughPoint) override;

protected:
  /// Three-point circles through collinear points count as skipped.
  void refused() override { skip(); }

private:
  /// What the reader's state holds after the commands written so far.
  struct SentTraits {
    bool colorSent = false;
    OdUInt32 color = 0;
    OdInt32 layer = -1;
    OdInt32 linetype = kByLayerIndex;
    OdInt32 lineWeight = -1;
    double linetypeScale = 1.0;
  };

  void beginCommand(OdUInt32 opcode);
  void endCommand();
  void putInt32(OdInt32 value);
  void putUInt32(OdUInt32 value);
  void putDouble(double value);
  void putPoint(const OdGePoint3d& point);
  void putVector(const OdGeVector3d& vector);
  void sendTraits();
  void readTableOrders();
  OdInt32 layerIndex(OdDbStub* layer);
  OdInt32 linetypeIndex(OdDbStub* linetype);
  void writePoints(OdUInt32 opcode, const std::vector<OdGePoint3d>& points,
                   const OdGeVector3d* normal);
  void writeWorldArc(const OdGePoint3d& center, double radius, const OdGeVector3d& normal,
                     const OdGeVector3d& startVector, double sweepAngle, OdGiArcType arcType,
                     bool full);
  void writeOutline(const OdGePoint3d& center, const OdGeVector3d& u, const OdGeVector3d& v,
                    double sweepAngle, OdGiArcType arcType, bool full);
  void writeLine(OdUInt32 opcode, const OdGePoint3d& first, const OdGePoint3d& second);
  bool worldPoints(OdInt32 numVertices, const OdGePoint3d* vertexList,
                   std::vector<OdGePoint3d>& points);
  void skip() { ++m_skipped; }

  std::vector<OdUInt8> m_body;
  std::size_t m_commandStart = 0;
  OdUInt32 m_commands = 0;
  SentTraits m_sent;
  /// Measures the world primitives as written, for the extents command.
  OdGiExtentsCollector m_extents;
  OdDbObjectIdArray m_layerOrder;
  OdDbObjectIdArray m_linetypeOrder;
  bool m_layerOrderGiven = false;
  bool m_linetypeOrderGiven = false;
  bool m_tableOrdersRead = false;
  unsigned m_skipped = 0;
};

#endif
