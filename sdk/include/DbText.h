#ifndef OD_DB_TEXT_H
#define OD_DB_TEXT_H

/// A single line of text: labels, coordinate readings, table cells once exploded.
///
/// Placement follows the drawing formats. With horizontal mode kTextLeft and vertical mode
/// kTextBase the position (the start of the baseline) is what the user set and the alignment
/// point is not used. In every other mode the alignment point is the anchor the user set and
/// the position is derived from it (adjustAlignment, run by every setter that moves the text),
/// measured with the platform's text metrics (GiTextMetrics.h); kTextAlign and kTextFit take
/// the baseline from the position to the alignment point and derive the height (align) or the
/// width factor (fit). The rules are in docs/text-metrics.md.
///
/// Points are world coordinates; the rotation is measured in the text's plane from the X axis
/// that the arbitrary-axis rule gives the normal.

#include "DbEntity.h"
#include "DbFiledPlanePoint.h"

namespace OdDb {
enum TextHorzMode {
  kTextLeft = 0,
  kTextCenter = 1,
  kTextRight = 2,
  kTextAlign = 3,
  kTextMid = 4,
  kTextFit = 5
};
enum TextVertMode { kTextBase = 0, kTextBottom = 1, kTextVertMid = 2, kTextTop = 3 };
} // namespace OdDb

/// Where a line of text is drawn, from its anchor points and modes: a value computed without
/// any database so that layouts can be checked on their own.
struct OdDbTextLayout {
  /// Start of the baseline.
  OdGePoint3d position;
  /// Unit baseline direction.
  OdGeVector3d direction;
  double height = 0.0;
  double widthFactor = 1.0;
};

/// Lays out `text` in the plane spanned by the unit vectors `direction` (baseline, from the
/// rotation) and `up`. Anchors: left/base uses `position`; align and fit run the baseline from
/// `position` to `alignmentPoint` (direction, height or width factor follow from it; when the
/// two points coincide or the text has no width the text is laid out as left/base); every
/// other mode puts the point of the text named by the modes on `alignmentPoint`:
///   horizontal  left: baseline start, center and mid: middle of the advance, right: end;
///   vertical    base: baseline, bottom: kDescent x height below it, middle: half the cap
///               height above it, top: the cap height above it; kTextMid ignores the vertical
///               mode and centres on the middle of the full box, descenders included.
OdDbTextLayout oddbTextLayout(OdDb::TextHorzMode horizontalMode, OdDb::TextVertMode verticalMode,
                              const OdGePoint3d& position, const OdGePoint3d& alignmentPoint,
                              const OdGeVector3d& direction, const OdGeVector3d& up, double height,
                              double widthFactor, const OdString& text);

class OdDbText : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbText);

  /// Height 2.5 (a new drawing's TEXTSIZE), width factor 1, left/base, empty string, no style.
  OdDbText();

  OdGePoint3d position() const;
  /// Moves the text; in a mode anchored at the alignment point the position is derived again,
  /// so for those set the alignment point instead (align and fit use both).
  void setPosition(const OdGePoint3d& position);
  OdGePoint3d alignmentPoint() const;
  void setAlignmentPoint(const OdGePoint3d& alignmentPoint);
  /// True for left/base, the mode in which the alignment point is not used.
  bool isDefaultAlignment() const;

  OdDb::TextHorzMode horizontalMode() const;
  /// Throws OdError(eInvalidInput) for a value outside the enumeration.
  void setHorizontalMode(OdDb::TextHorzMode mode);
  OdDb::TextVertMode verticalMode() const;
  /// Throws OdError(eInvalidInput) for a value outside the enumeration.
  void setVerticalMode(OdDb::TextVertMode mode);

  double height() const;
  /// Throws OdError(eInvalidInput) for a height that is not a positive finite number.
  void setHeight(double height);
  /// In radians.
  double rotation() const;
  void setRotation(double rotation);
  double widthFactor() const;
  /// Throws OdError(eInvalidInput) for a factor that is not a positive finite number.
  void setWidthFactor(double widthFactor);
  /// Slant from the vertical, in radians; throws OdError(eInvalidInput) beyond ±85°, where
  /// the glyphs degenerate.
  double oblique() const;
  void setOblique(double oblique);

  OdString textString() const;
  void setTextString(const OdString& text);
  OdDbObjectId textStyle() const;
  void setTextStyle(OdDbObjectId textStyleId);

  double thickness() const;
  void setThickness(double thickness);
  OdGeVector3d normal() const;
  /// Stores the unit vector; throws OdError(eInvalidInput) for a zero or non-finite normal.
  void setNormal(const OdGeVector3d& normal);

  /// Derives the position (and for align/fit the rotation and the height or width factor)
  /// from the alignment point again. The database argument is accepted for the SDK's
  /// signature; the metrics do not depend on it.
  void adjustAlignment(OdDbDatabase* database = nullptr);

  /// After the entity's data: 3BD position, 3BD alignment point, 3BD normal, BD thickness,
  /// BD oblique, BD rotation, BD height, BD width factor, TV string, BS horizontal mode,
  /// BS vertical mode, H text style (hard pointer).
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbText": 10 position, 39 thickness (when not 0), 40 height, 1 string,
  /// 50 rotation (degrees, when not 0), 41 width factor (when not 1), 51 oblique (degrees,
  /// when not 0), 7 style name, 72 horizontal mode (when not left), 11 alignment point (when
  /// not left/base), 210 normal (when not the Z axis); then "AcDbText" again with 73 vertical
  /// mode (when not base). Points are in the text's plane coordinates, as the format has
  /// them. Reading resolves 7 through the filer's (or the text's) database; a name it does
  /// not know leaves the style as it was.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// Draws the string at its laid-out position; returns true.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// Grip 0 the position; grip 1 the alignment point, in every mode but left/base.
  OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const override;
  /// Grip 0 moves the position (the whole text, in the modes anchored at the alignment point
  /// only); grip 1 moves the alignment point. Another index gives eInvalidIndex, no change.
  OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// Insertion snap: the position and, when used, the alignment point.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Points through the matrix; rotation, normal, height and width factor from the images of
  /// the baseline and up directions (a non-uniform scale changes the width factor). A
  /// mirroring matrix keeps the text readable, as with MIRRTEXT 0: the text's box is
  /// mirrored, its glyphs are not; the baseline is reversed, left and right modes swap, and
  /// align/fit swap their two points. A matrix that flattens the text gives eInvalidInput and
  /// changes nothing.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// A text is a standard entity already: eNotApplicable.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The text's box from the metrics (baseline to cap height), extruded by the thickness.
  OdResult subGetGeomExtents(OdGeExtents3d& extents) const override;
  /// Takes the database's TEXTSTYLE.
  void subSetDatabaseDefaults(OdDbDatabase* database, bool doSubents) override;

private:
  OdDbTextLayout layout() const;
  void adjust();

  OdGePoint3d m_position;
  OdGePoint3d m_alignmentPoint;
  OdGeVector3d m_normal{0.0, 0.0, 1.0};
  double m_thickness = 0.0;
  double m_oblique = 0.0;
  double m_rotation = 0.0;
  double m_height = 2.5;
  double m_widthFactor = 1.0;
  OdString m_text;
  OdDb::TextHorzMode m_horizontalMode = OdDb::kTextLeft;
  OdDb::TextVertMode m_verticalMode = OdDb::kTextBase;
  OdDbObjectId m_textStyleId;
  OdDbFiledPlanePoint m_filedPosition;
  OdDbFiledPlanePoint m_filedAlignmentPoint;
};

typedef OdSmartPtr<OdDbText> OdDbTextPtr;

#endif
