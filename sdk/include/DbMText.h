#ifndef OD_DB_MTEXT_H
#define OD_DB_MTEXT_H

/// Multi-line text: dimension texts, notes and table cells, with the inline format codes that
/// CAD users type (\P paragraph breaks, {} groups, \H height, \C colour, \f font, \L/\O/\K
/// decorations, \S stacks, \~ non-breaking space, %%c/%%d/%%p symbols).
///
/// The text block is anchored at its location by its attachment point (1 top left to 9
/// bottom right) in the plane given by the normal, with the baseline direction from the
/// direction vector (or the rotation). With a width above 0 the lines are wrapped at word
/// boundaries to that width; with width 0 only paragraph breaks end lines. Line advance is
/// the platform's text metrics (GiTextMetrics.h, docs/text-metrics.md), so the block's actual
/// size, its extents and its explode pieces are deterministic.

#include "DbEntity.h"

#include <vector>

class OdDbText;
struct OdDbMTextLayout;

/// One line of a laid-out multi-line text: the plain characters of the line (format codes
/// resolved) and where its baseline starts, in world coordinates.
struct OdDbMTextLine {
  OdString text;
  OdGePoint3d position;
  /// Character height of the line (the largest \H height on it).
  double height = 0.0;
  /// Advance of the line along the direction, in drawing units.
  double width = 0.0;
};

class OdDbMText : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbMText);

  enum AttachmentPoint {
    kTopLeft = 1,
    kTopCenter = 2,
    kTopRight = 3,
    kMiddleLeft = 4,
    kMiddleCenter = 5,
    kMiddleRight = 6,
    kBottomLeft = 7,
    kBottomCenter = 8,
    kBottomRight = 9
  };
  enum FlowDirection { kLtoR = 1, kRtoL = 2, kTtoB = 3, kBtoT = 4, kByStyle = 5 };

  /// Text height 2.5, top-left attachment, width 0 (no wrapping), empty contents, X axis
  /// direction, Z axis normal, line spacing factor 1, no style.
  OdDbMText();

  OdGePoint3d location() const;
  /// Throws OdError(eInvalidInput) for a point with a non-finite coordinate.
  void setLocation(const OdGePoint3d& location);
  OdGeVector3d normal() const;
  /// Stores the unit vector and keeps the rotation, so the text turns with its plane; throws
  /// OdError(eInvalidInput) for a zero or non-finite normal.
  void setNormal(const OdGeVector3d& normal);
  /// Unit baseline direction in world coordinates.
  OdGeVector3d direction() const;
  /// Projected into the text's plane and normalised; throws OdError(eInvalidInput) for a
  /// vector with no component in the plane.
  void setDirection(const OdGeVector3d& direction);
  /// Angle of the direction from the plane's X axis (arbitrary-axis rule), in radians.
  double rotation() const;
  /// Throws OdError(eInvalidInput) for a non-finite angle.
  void setRotation(double rotation);

  /// Wrapping width; 0 means lines end only at paragraph breaks.
  double width() const;
  /// Throws OdError(eInvalidInput) for a negative or non-finite width.
  void setWidth(double width);
  /// The box height the user defined (not used for layout; kept and filed).
  double height() const;
  /// Throws OdError(eInvalidInput) for a negative or non-finite height.
  void setHeight(double height);
  /// Character height of text without an \H code.
  double textHeight() const;
  /// Throws OdError(eInvalidInput) for a height that is not a positive finite number.
  void setTextHeight(double height);

  AttachmentPoint attachment() const;
  /// Keeps the location and moves the block around it. Throws OdError(eInvalidInput) outside
  /// 1 to 9.
  void setAttachment(AttachmentPoint attachment);
  /// Kept and filed; lines always run along the direction.
  FlowDirection flowDirection() const;
  /// Throws OdError(eInvalidInput) outside the enumeration.
  void setFlowDirection(FlowDirection direction);
  double lineSpacingFactor() const;
  /// Throws OdError(eInvalidInput) outside 0.25 to 4.0, the range the formats allow.
  void setLineSpacingFactor(double factor);

  /// The contents with their format codes, as typed.
  OdString contents() const;
  void setContents(const OdString& contents);
  /// The contents with format codes resolved: paragraph breaks become "\r\n", stacks "a/b".
  OdString text() const;

  OdDbObjectId textStyle() const;
  void setTextStyle(OdDbObjectId textStyleId);

  /// Size of the laid-out block along the direction (the widest line) and across it (first
  /// line's cap height to the last line's descenders).
  double actualWidth() const;
  double actualHeight() const;
  /// The laid-out lines in drawing order (top line first); an empty paragraph is an empty
  /// line.
  std::vector<OdDbMTextLine> lines() const;
  /// The four corners of the laid-out block: top left, top right, bottom right, bottom left,
  /// in the text's own sense of top and left; replaces what points held.
  void getBoundingPoints(OdGePoint3dArray& points) const;

  /// After the entity's data: 3BD location, 3BD normal, 3BD direction, BD width, BD height,
  /// BD text height, BS attachment, BS flow direction, BD line spacing factor, TV contents,
  /// H text style (hard pointer).
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Subclass "AcDbMText": 10 location, 40 text height, 41 width, 46 defined height,
  /// 71 attachment, 72 flow direction, 3 (chunks of 250 characters) then 1 contents, 7 style
  /// name, 210 normal (when not the Z axis), 11 direction, 42 and 43 actual width and height
  /// (for other readers; ignored when read), 44 line spacing factor. Points and the direction
  /// are in world coordinates. Line breaks in the contents are written as "\P", since a group
  /// value is one line. Reading takes 50 (rotation, in degrees as the drawing programs write
  /// it) only when 11 is absent, resolves 7 through the filer's (or the text's) database
  /// leaving the style as it was for an unknown name, and refuses out-of-range values with
  /// eInvalidInput, nothing changed.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;
  void dxfOutFields(OdDbDxfFiler* filer) const override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// Draws each laid-out line as text, one call per run of one format (in the run's colour
  /// when \C or \c set one, the entity's colour restored after it); returns true.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// Grip 0 the location.
  OdResult subGetGripPoints(OdGePoint3dArray& gripPoints) const override;
  /// Grip 0 moves the whole text; another index gives eInvalidIndex, no change.
  OdResult subMoveGripPointsAt(const OdIntArray& indices, const OdGeVector3d& offset) override;
  /// Insertion snap: the location; nothing else.
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// Location, direction and normal through the matrix; the text height, the defined height and
  /// the absolute \H heights in the contents scale with the matrix across the baseline, the
  /// wrapping width along it. A mirroring matrix keeps the text readable (the block is
  /// mirrored, the glyphs are not: the baseline is reversed and left and right attachments
  /// swap). A matrix that flattens the text gives eInvalidInput and changes nothing.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// One OdDbText per laid-out line that has characters, left/base at the line's start, with the
  /// line's height, the first fragment's width factor, the entity's style and properties, and
  /// the \C colour when one colours the whole line.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The laid-out block's box.
  OdResult subGetGeomExtents(OdGeExtents3d& extents) const override;
  /// Takes the database's TEXTSTYLE and TEXTSIZE.
  void subSetDatabaseDefaults(OdDbDatabase* database, bool doSubents) override;

private:
  OdDbMTextLayout layout() const;
  /// The world point at (x along the direction, y across it) from the location.
  OdGePoint3d planePoint(double x, double y) const;

  OdGePoint3d m_location;
  OdGeVector3d m_normal{0.0, 0.0, 1.0};
  OdGeVector3d m_direction{1.0, 0.0, 0.0};
  double m_width = 0.0;
  double m_height = 0.0;
  double m_textHeight = 2.5;
  AttachmentPoint m_attachment = kTopLeft;
  FlowDirection m_flowDirection = kLtoR;
  double m_lineSpacingFactor = 1.0;
  OdString m_contents;
  OdDbObjectId m_textStyleId;
};

typedef OdSmartPtr<OdDbMText> OdDbMTextPtr;

#endif
