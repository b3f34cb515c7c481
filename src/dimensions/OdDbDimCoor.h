#ifndef CUSTENTS_OD_DB_DIM_COOR_H
#define CUSTENTS_OD_DB_DIM_COOR_H

#include "DbDatabase.h"
#include "DbEntity.h"
#include "DbLine.h"
#include "DbText.h"
#include "OdString.h"

// ---------------------------------------------------------------------------------------------
// Layout shared by both coordinate dimensions, computed without any entity.

namespace custents {

/// Decimal places the coordinate dimensions use until the host's setting is applied.
constexpr int kDefaultCoordinatePrecision = 2;
/// Largest number of decimals taken from the host's setting; more than a double carries would
/// only show noise, and a negative setting means none.
constexpr int kMaxCoordinatePrecision = 15;

/// The number format of a coordinate text: `prefix` followed by "%.<precision>f" ("X=%.2f"),
/// the precision clamped to 0..kMaxCoordinatePrecision.
OdString coordinateFormat(const OdString& prefix, int precision);
/// `format` (made by coordinateFormat) applied to value.
OdString formatCoordinate(const OdString& format, double value);
/// The decimal places the host's profile sets for measured texts ("dimAccurity" in section
/// "options", 0 when missing), clamped as coordinateFormat clamps it.
int profileCoordinatePrecision();

/// The end of the shoulder that starts at the bend point `dimPt`: level with it, reaching
/// (longestText + 1) * textHeight * 0.75 to the right when the bend is at or right of the
/// measured point, to the left otherwise.
OdGePoint3d shoulderEnd(const OdGePoint3d& startPt, const OdGePoint3d& dimPt, int longestText,
                        double textHeight);

/// The snap points a leader from startPt to dimPt offers: both ends, the middle, the foot of
/// the perpendicular from lastPoint on the line through them, and the point of the segment
/// nearest to pickPoint. Other modes add nothing; so does perpendicular on a leader of length 0.
void appendLeaderSnaps(OdDb::OsnapMode mode, const OdGePoint3d& startPt, const OdGePoint3d& dimPt,
                       const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                       OdGePoint3dArray& snapPoints);

/// The prefixes of the two texts.
extern const OdString kCoordinateXPrefix; // "X="
extern const OdString kCoordinateYPrefix; // "Y="
/// The colour a new coordinate dimension's lines and texts take: true colour 0,255,0.
OdCmColor defaultCoordinateColor();
/// A leader or shoulder piece of dimension from `from` to `to`: a free-standing line with the
/// dimension's properties in the line colour. Throws the not-loaded error when the line class
/// is missing.
OdDbLinePtr newDimensionLine(const OdDbEntity* dimension, const OdCmColor& color,
                             const OdGePoint3d& from, const OdGePoint3d& to);

} // namespace custents

/// The older coordinate dimension: labels the measured point startPt with its coordinates on a
/// leader to the bend point dimPt and a horizontal shoulder from there. Its two texts are single
/// line texts built when drawn. The survey convention is the default: the text labelled "X="
/// shows the northing (y) and "Y=" the easting (x).
class OdDbDimCoor : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbDimCoor);

  /// The format version this class writes. Versions up to it (within 1e-10) are read; colours
  /// only from exactly this version, older streams keep the default colours.
  static constexpr double s_kCurrentVersion = 3.0;

  /// Both points at the origin, text height 2.5, gap 0.5, no offsets, formats with 2 decimals,
  /// empty texts (filled in from the formats when needed), survey convention, texts and lines
  /// in true colour green.
  OdDbDimCoor();

  OdGePoint3d getStartPt() const;
  /// Moves the measured point only; setTxtAcc re-labels it.
  void setStartPt(const OdGePoint3d& point);
  OdGePoint3d getDimPt() const;
  void setDimPt(const OdGePoint3d& point);
  /// The end of the shoulder as last built (getArrow).
  OdGePoint3d getEndPt() const;
  double getTxtHeight() const;
  double getTxtOffsetX() const;
  /// The vertical counterpart of getTxtOffsetX. Drawings carry it, but the texts are placed
  /// with the gap alone; it is kept so that a drawing written again keeps its value.
  double getTxtOffsetY() const;
  double getTxtGap() const;

  OdString getXText() const;
  void setXText(const OdString& text);
  OdString getYText() const;
  void setYText(const OdString& text);
  OdString getXFormat() const;
  OdString getYFormat() const;
  bool getXUp() const;
  /// Takes effect when the texts are re-formatted (setTxtAcc).
  void setXUp(bool xUp);
  OdCmColor getTxtColor() const;
  void setTxtColor(const OdCmColor& color);
  OdCmColor getDimColor() const;
  /// The entity's colour is the colour of its lines as well.
  void setColor(const OdCmColor& color, bool doSubents = true) override;

  /// The X format applied to startPt.x. Unlike setTxtAcc this never swaps the axes: callers
  /// rely on the plain x here.
  OdString GetXName() const;
  /// The Y format applied to startPt.y, without the swap (see GetXName).
  OdString GetYName() const;
  /// The longer of the two texts' lengths in characters. An empty text is first filled in,
  /// and kept, as GetXName (X) or GetYName (Y) gives it.
  int GetTextMaxLength();
  /// The leader from startPt to dimPt, with the entity's properties and the line colour.
  OdDbLinePtr getline() const;
  /// Builds the shoulder (stores endPt) and returns it as a line like getline.
  OdDbLinePtr getArrow();
  /// The X text as drawn: on the shoulder, in the text colour and the style "hztxt". Null when
  /// the text height is not a positive finite number or a point is not finite (nothing can be
  /// drawn then). Throws the not-loaded error when the text class is not registered.
  OdDbTextPtr getXTextObj() const;
  /// The Y text as drawn, under the shoulder; null as getXTextObj.
  OdDbTextPtr getYTextObj() const;
  /// Re-labels the point: formats with the decimals of the host's setting, the X text from y
  /// and the Y text from x under the survey convention (from x and y otherwise).
  void setTxtAcc();
  /// Model units per screen unit; this dimension does not scale with the view.
  double scaleS2W() const { return 1.0; }
  /// The text style of the texts, found or created in database (the shared routine, with the
  /// style named after the size as this dimension has always named it).
  OdDbObjectId getCurTextStyle(OdDbDatabasePtr database, double priorSize, const OdString& faceName,
                               const OdString& fontFile, int bold, int italic,
                               double nameSize) const;

  /// After the entity's data: version 3.0 (double), startPt, dimPt, endPt, text height, x
  /// offset, y offset, gap, xUp, X text, Y text, line colour, text colour. A version above 3.0
  /// is refused with result 1 and nothing read; a stream that ends early gives the filer's
  /// error and leaves the fields as they were.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Refuses with result 1 and reads nothing: the dimension travels in DWG form only.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// Leader and shoulder in the line colour, then the two texts in the text colour.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// The three points follow the matrix; the text height stays.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// Leader and shoulder as lines (line colour) and the two texts (text colour), all with the
  /// entity's other properties.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// Snaps on the leader only (custents::appendLeaderSnaps).
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// One grip, index 0, at startPt.
  OdResult subGetGripPoints(OdDbGripDataPtrArray& grips, double curViewUnitSize, int gripSize,
                            const OdGeVector3d& curViewDir, int bitFlags) const override;
  /// Grip 0 moves startPt and re-labels it (setTxtAcc); other indices move nothing.
  OdResult subMoveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                               int bitFlags) override;

private:
  OdString shownXText() const;
  OdString shownYText() const;
  int longestShownText() const;
  OdGePoint3d currentShoulderEnd() const;
  OdDbLinePtr newLine(const OdGePoint3d& from, const OdGePoint3d& to) const;
  OdDbTextPtr newText(const OdString& contents, bool above) const;

  OdGePoint3d m_startPt;
  OdGePoint3d m_dimPt;
  OdGePoint3d m_endPt;
  double m_txtHeight = 2.5;
  double m_txtOffsetX = 0.0;
  double m_txtOffsetY = 0.0;
  double m_txtGap = 0.5;
  OdString m_xFormat;
  OdString m_yFormat;
  OdString m_xText;
  OdString m_yText;
  bool m_xUp = true;
  OdCmColor m_txtColor;
  OdCmColor m_dimColor;
};

typedef OdSmartPtr<OdDbDimCoor> OdDbDimCoorPtr;

#endif
