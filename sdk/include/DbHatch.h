#ifndef OD_DB_HATCH_H
#define OD_DB_HATCH_H

/// A filled or patterned area in one plane, bounded by closed loops.
///
/// The plane is the one with the hatch's normal at height elevation() above the world origin
/// along it; its axes come from the arbitrary-axis rule (OdGeMatrix3d::planeToWorld), as for
/// the lightweight polyline. Loops are closed chains of 2D vertices in that plane, each vertex
/// carrying the bulge of the segment that starts at it (0 straight, positive counter-clockwise
/// about the normal, 1 a half circle); the last segment runs back to the first vertex. Only
/// polyline loops are kept (no edge loops, no boundary objects, no seed points).
///
/// Pattern lines are computed when drawn, from a small table of continuous-line patterns
/// (pattern units are millimetres, as in the ISO pattern file):
///   ANSI31  lines at 45°, 3.175 apart
///   ANSI37  lines at 45° and at 135°, 3.175 apart
///   LINE    lines at 0°, 3.175 apart
///   NET     lines at 0° and at 90°, 3.175 apart
/// Any other name (also for custom-defined patterns, whose definitions are not kept) is drawn
/// as ANSI31. A user-defined pattern is lines at 0°, 3.175 apart, and also at 90° when
/// patternDouble() is set. Every family turns by patternAngle() and its spacing grows with
/// patternScale(); the families pass through the plane's origin.

#include "DbEntity.h"
#include "Ge/GePoint2d.h"

class OdDbHatch : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbHatch);

  enum HatchPatternType { kUserDefined = 0, kPreDefined = 1, kCustomDefined = 2 };
  /// Which parts of nested loops are hatched: kNormal alternates (inside an odd number of
  /// loops), kOuter only the area inside exactly one loop, kIgnore everything inside any loop.
  enum HatchStyle { kNormal = 0, kOuter = 1, kIgnore = 2 };
  enum HatchObjectType { kHatchObject = 0, kGradientObject = 1 };
  /// Bits of a loop's type; every loop kept here has kPolyline.
  enum HatchLoopType {
    kDefault = 0,
    kExternal = 1,
    kPolyline = 2,
    kDerived = 4,
    kTextbox = 8,
    kOutermost = 0x10,
    kNotClosed = 0x20,
    kSelfIntersecting = 0x40,
    kTextIsland = 0x80,
    kDuplicate = 0x100
  };

  /// No loops; predefined pattern with an empty name (drawn as ANSI31), scale 1, angle 0,
  /// normal style, not solid, not associative, elevation 0, normal the Z axis.
  OdDbHatch();

  double elevation() const;
  /// Throws OdError(eInvalidInput) for a value that is not finite.
  void setElevation(double elevation);
  OdGeVector3d normal() const;
  /// Stores the unit vector; throws OdError(eInvalidInput) for a zero-length or non-finite
  /// normal. The loops keep their 2D vertices, so the hatch moves into the new plane.
  void setNormal(const OdGeVector3d& normal);

  int numLoops() const;
  /// Throws OdError_InvalidIndex for an index that is not a loop.
  OdInt32 loopTypeAt(int loopIndex) const;
  /// The loop's type and vertices, and one bulge per vertex (zeros where the loop was given
  /// none). Throws OdError_InvalidIndex for an index that is not a loop.
  void getLoopAt(int loopIndex, OdInt32& loopType, OdGePoint2dArray& vertices,
                 OdGeDoubleArray& bulges) const;
  /// Adds a closed polyline loop. bulges is empty (all straight) or holds one bulge per
  /// vertex. Throws OdError(eInvalidInput) and adds nothing when loopType lacks kPolyline,
  /// there are fewer than 2 vertices, the bulge count differs from the vertex count, or a
  /// coordinate or bulge is not finite.
  void appendLoop(OdInt32 loopType, const OdGePoint2dArray& vertices,
                  const OdGeDoubleArray& bulges);
  /// As appendLoop, before loop loopIndex (numLoops() appends); any other index throws
  /// OdError_InvalidIndex.
  void insertLoopAt(int loopIndex, OdInt32 loopType, const OdGePoint2dArray& vertices,
                    const OdGeDoubleArray& bulges);
  /// Throws OdError_InvalidIndex for an index that is not a loop.
  void removeLoopAt(int loopIndex);

  bool associative() const;
  /// Only recorded (and filed): the loops are not tied to other entities here.
  void setAssociative(bool isAssociative);

  HatchPatternType patternType() const;
  OdString patternName() const;
  /// The predefined pattern "SOLID" (in any letter case) makes a solid fill; any other
  /// combination a pattern of that name. The name is kept as given. Throws
  /// OdError(eInvalidInput) for a type outside the enumeration.
  void setPattern(HatchPatternType patType, const OdString& patName);
  /// In radians, counter-clockwise about the normal.
  double patternAngle() const;
  /// Throws OdError(eInvalidInput) for an angle that is not finite.
  void setPatternAngle(double angle);
  double patternScale() const;
  /// Throws OdError(eInvalidInput) for a scale that is not a positive finite number.
  void setPatternScale(double scale);
  /// Whether a user-defined pattern is crossed by a second family at 90°.
  bool patternDouble() const;
  void setPatternDouble(bool isDouble);
  bool isSolidFill() const;

  HatchStyle hatchStyle() const;
  /// Throws OdError(eInvalidInput) for a style outside the enumeration.
  void setHatchStyle(HatchStyle hatchStyle);
  HatchObjectType hatchObjectType() const;
  /// Only recorded (and filed): no gradient is drawn. Throws OdError(eInvalidInput) for a
  /// type outside the enumeration.
  void setHatchObjectType(HatchObjectType hatchObjectType);

  /// The hatched area by loop types, whatever the style: the areas enclosed by the loops with
  /// kExternal or kOutermost, minus the areas of all other loops (islands). Each loop's area
  /// includes its bulged segments. eOk always (0 without loops).
  OdResult getArea(double& area) const;

  /// After the entity's data, the HATCH data of the DWG format (R2004 and later):
  ///   BL gradient flag (the object type), BL reserved 0, BD gradient angle 0, BD shift 0,
  ///   BL single colour 0, BD tint 0, BL gradient colour count 0, TU gradient name (empty);
  ///   BD elevation, 3BD normal, TU pattern name, B solid fill, B associative, BL loop count;
  ///   per loop: BL type, B has bulges, B closed (always 1), BL vertex count, per vertex the
  ///   point as BD pair (the format has raw doubles) and the BD bulge when it has bulges,
  ///   BL boundary object count 0;
  ///   BS style, BS pattern type, BD angle, BD scale, B double, BS definition line count 0,
  ///   BL seed point count 0. Angle, scale and double are written for a solid fill too, so
  ///   that it keeps them.
  /// Reading refuses counts the rest of the stream cannot hold before allocating anything,
  /// loops that are not polyline loops, gradient colours, boundary objects and pattern
  /// definition lines (none of which are kept: eDwgObjectImproperlyRead), and values the
  /// setters refuse; seed points are read and dropped. A failed read leaves the hatch's own
  /// fields unchanged.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbHatch": 10 (0, 0, elevation), 210 normal, 2 pattern name, 70 solid fill,
  /// 71 associative, 91 loop count; per loop 92 type, 72 has bulges, 73 closed, 93 vertex
  /// count, per vertex 10 point and 42 bulge (when it has bulges), 97 0; then 75 style,
  /// 76 pattern type, 52 angle (degrees), 41 scale, 77 double, 78 0, 98 0, and 450 1 for a
  /// gradient object. Reading takes the loops in that structure (a 42 after a vertex is
  /// optional); edge loops, or a loop out of that structure, give eInvalidDxfCode, values the
  /// setters refuse eInvalidInput; boundary object handles, pattern definition lines and seed
  /// points are skipped.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// Solid fill: each loop as one polygon with the fill type kOdGiFillAlways (restored after),
  /// islands included, since a polygon has no holes. Pattern: each loop's outline as a closed
  /// polyline, then the pattern lines clipped to the hatched area as two-point polylines. A
  /// bulged segment is cut into equal-angle pieces (64 to the full circle, finer when the
  /// draw context's curve deviation asks, at most 1024 per arc); clipping uses the true arcs.
  /// A family that would need more than 10000 lines across the loops is left out. Returns
  /// true.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// The loop vertices, loop by loop.
  OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const override;
  /// Moves the vertices of those grip indices by the offset's part in the plane. An index
  /// that is not a vertex gives eInvalidIndex and moves nothing.
  OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// As the grips.
  OdResult subGetStretchPoints(OdGePoint3dArray& stretchPoints) const override;
  OdResult subMoveStretchPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// End: the loop vertices. Mid: the middle of each segment (on the arc for a bulged one).
  /// Other modes add nothing. Always eOk.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Moves the plane with the matrix. The matrix must map the plane onto a plane without
  /// distorting it (its in-plane part a rotation, possibly mirrored, times one scale), since
  /// arcs and pattern spacing could not follow otherwise: other matrices, perspective ones and
  /// ones that flatten the plane give eInvalidInput and change nothing. The pattern scale is
  /// multiplied by the matrix's scale and the pattern angle follows the rotation (normalised
  /// to [0, 2π)); a mirror reverses the bulges but keeps the pattern unmirrored.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// One closed OdDbPolyline per loop (vertices, bulges, elevation, normal) with the hatch's
  /// properties: the outlines, since the fill or pattern has no standard-entity equivalent of
  /// its own. eOk, nothing added, without loops.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The intersections of the loop outlines (the exploded polylines, through
  /// OdDbPolyline::intersectWith) with other, each point once; on failure the result of the
  /// first outline whose intersection fails, and no points.
  OdResult subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                            OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                            OdGsMarker otherGsMarker) const override;
  /// The box of the loops, arcs included; eInvalidExtents without loops.
  OdResult subGetGeomExtents(OdGeExtents3d& extents) const override;

private:
  struct Loop {
    OdInt32 type = kPolyline;
    OdGePoint2dArray vertices;
    /// One per vertex.
    OdGeDoubleArray bulges;
  };

  static Loop checkedLoop(OdInt32 loopType, const OdGePoint2dArray& vertices,
                          const OdGeDoubleArray& bulges);
  const Loop& loopAt(int loopIndex) const;
  OdGeMatrix3d planeToWorld() const;
  OdGePoint3d toWorld(const OdGeMatrix3d& planeToWorld, const OdGePoint2d& point) const;
  /// The loops as closed polylines with this hatch's plane and properties.
  OdRxObjectPtrArray outlines() const;
  void drawPattern(OdGiWorldDraw* worldDraw, const OdGeMatrix3d& planeToWorld) const;
  OdResult moveVertices(const OdIntArray& indices, const OdGeVector3d& offset);

  OdArray<Loop> m_loops;
  HatchPatternType m_patternType = kPreDefined;
  OdString m_patternName;
  double m_patternAngle = 0.0;
  double m_patternScale = 1.0;
  bool m_patternDouble = false;
  bool m_solidFill = false;
  bool m_associative = false;
  HatchStyle m_hatchStyle = kNormal;
  HatchObjectType m_hatchObjectType = kHatchObject;
  double m_elevation = 0.0;
  OdGeVector3d m_normal{0.0, 0.0, 1.0};
};

typedef OdSmartPtr<OdDbHatch> OdDbHatchPtr;

#endif
