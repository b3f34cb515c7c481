#ifndef CUSTENTS_OD_DB_NEW_DIM_COOR_H
#define CUSTENTS_OD_DB_NEW_DIM_COOR_H

#include "DbLine.h"
#include "DbMText.h"
#include "OdDbCustomDimensionBase.h"

/// The newer coordinate dimension: the same leader and shoulder as OdDbDimCoor, with its texts
/// kept as multi-line text objects of its own, so that they can be edited in place, styled,
/// coloured and sized through the dimension base's text operations.
///
/// The shoulder and the texts are laid out in the current UCS of the dimension's drawing
/// (horizontal there) whenever the points, the texts or their height change; drawing shows
/// that layout as it stands, and reading lays the dimension out again in the plane its texts
/// were read in. The texts are kept in world coordinates.
///
/// Besides the X and Y texts the dimension owns a third text: a free note line under the Y
/// text (a point's name or elevation, say), empty in a new dimension. It is filed, drawn,
/// coloured and sized with the others.
class OdDbNewDimCoor : public OdDbCustomDimensionBase {
  ODRX_DECLARE_MEMBERS(OdDbNewDimCoor);

  /// The format version this class writes; no other version is read.
  static constexpr double s_kCurrentVersion = 1.0;

  /// Both points at the origin, formats with 2 decimals, survey convention, lines and texts in
  /// true colour green, texts 2.5 high and filled in from the formats. Throws the not-loaded
  /// error when the multi-line text class is not registered.
  OdDbNewDimCoor();

  OdGePoint3d getStartPt() const;
  /// Moves the measured point and lays the dimension out again; setTxtAcc re-labels it.
  void setStartPt(const OdGePoint3d& point);
  OdGePoint3d getDimPt() const;
  void setDimPt(const OdGePoint3d& point);
  /// The end of the shoulder as last laid out.
  OdGePoint3d getEndPt() const;
  bool getXUp() const;
  /// Takes effect when the texts are re-formatted (setTxtAcc).
  void setXUp(bool xUp);
  OdString getXFormat() const;
  OdString getYFormat() const;
  /// The line colour. (The dimension base's getDimColor(OdCmColor&) keeps its base behaviour.)
  OdCmColor dimColor() const;
  /// The entity's colour is the colour of its lines as well; the texts keep theirs.
  void setColor(const OdCmColor& color, bool doSubents = true) override;

  /// The text objects themselves, not copies: the dimension base's text operations take them
  /// to say which text to change.
  OdDbMTextPtr getXTextObj() const;
  OdDbMTextPtr getYTextObj() const;
  OdDbMTextPtr getThirdTextObj() const;
  /// Replaces the X text's contents and lays the dimension out again.
  void setXtext(const OdString& text);
  void setYtext(const OdString& text);

  /// The X format applied to startPt.x, never swapped (see OdDbDimCoor::GetXName).
  OdString GetXName() const;
  /// The Y format applied to startPt.y, never swapped.
  OdString GetYName() const;
  /// The longer of the X and Y texts in characters; an empty one is first filled in, and
  /// kept, as GetXName or GetYName gives it.
  int GetTextMaxLength();
  /// The leader from startPt to dimPt, with the entity's properties and the line colour.
  OdDbLinePtr getline() const;
  /// Builds the shoulder in the current UCS (stores endPt) and places the texts at it.
  void setArrow();
  /// Places the texts at the shoulder as it stands: the X text bottom-left, two thirds of the
  /// text height right of the shoulder's text end and half a height above it; the Y text
  /// top-left as far under it; the third text one line under the Y text.
  void updateTxtPosition();
  /// Re-labels the point with the decimals of the host's setting (as OdDbDimCoor::setTxtAcc)
  /// and lays the dimension out again.
  void setTxtAcc();

  // The dimension base's text operations this dimension has its own way of doing.

  /// Leader and shoulder as lines, and the texts taken apart into single-line texts.
  OdResult subSuperExplode(OdArray<OdRxObjectPtr>& entitySet) const override;
  /// Replaces textObj's contents; false for a null textObj.
  bool setDimensionText(const OdString& text, OdSmartPtr<OdDbMText>& textObj) override;
  /// Takes contents and height of the edited text into textObj; the height goes to all texts.
  /// False when either text is null.
  bool editDimensionText(OdSmartPtr<OdDbMText>& textObj, OdSmartPtr<OdDbMText> editedText) override;
  /// The style of all three texts.
  void setTxtStyleId(OdDbObjectId styleId) override;
  /// As the base (pure white becomes ACI 7); a null textObj colours all three texts.
  void setColorText(OdSmartPtr<OdDbMText>& textObj, OdCmColor& color) override;
  /// As the base, and non-finite heights are ignored too; the layout follows the new height.
  void setFontHeight(OdSmartPtr<OdDbMText>& textObj, double height) override;
  /// setFontHeight for all three texts.
  void setTextHeight(double height) override;

  /// After the entity's data: version 1.0 (double), startPt, dimPt, endPt, xUp, line colour,
  /// then the X, Y and third text, each filed inline with its own fields. Any other version is
  /// refused with result 1 and nothing read; a stream that ends early gives the filer's error
  /// and leaves the dimension as it was. After reading, the texts are attached to the drawing
  /// (keeping the colour, layer, linetype, height and style they were read with) and the
  /// dimension is laid out again in the plane of its X text.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;
  /// Refuses with result 1 and reads nothing: the dimension travels in DWG form only.
  OdResult dxfInFields(OdDbDxfFiler* filer) override;

protected:
  using OdDbEntity::subGetGripPoints;
  using OdDbEntity::subMoveGripPointsAt;

  /// Leader and shoulder in the line colour, then each text in its own colour.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// Its texts join the drawing too, keeping their own colour, height and style, so that what
  /// a save writes is what a load gives back.
  void subSetDatabaseDefaults(OdDbDatabase* database, bool doSubents) override;
  /// Points and texts follow the matrix. A matrix a text cannot follow (one that flattens it)
  /// gives the text's result and changes nothing.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// Leader and shoulder as lines (line colour), then copies of the texts that have contents,
  /// all with the entity's properties and the texts' own colours.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// Snaps on the leader only (custents::appendLeaderSnaps).
  OdResult subGetOsnapPoints(OdDb::OsnapMode osnapMode, OdGsMarker gsSelectionMark,
                             const OdGePoint3d& pickPoint, const OdGePoint3d& lastPoint,
                             const OdGeMatrix3d& xWorldToEye,
                             OdGePoint3dArray& snapPoints) const override;
  /// One grip, index 0, at startPt.
  OdResult subGetGripPoints(OdDbGripDataPtrArray& grips, double curViewUnitSize, int gripSize,
                            const OdGeVector3d& curViewDir, int bitFlags) const override;
  /// Grip 0 moves startPt, re-labels it and lays the dimension out again; other indices move
  /// nothing.
  OdResult subMoveGripPointsAt(const OdDbVoidPtrArray& grips, const OdGeVector3d& offset,
                               int bitFlags) override;

private:
  OdDbLinePtr newLine(const OdGePoint3d& from, const OdGePoint3d& to) const;
  OdGeMatrix3d ucsToWorld() const;
  /// The plane the texts were laid out in: x along the X text, z its normal.
  OdGeMatrix3d frameOfTexts() const;
  /// setArrow in the current UCS, or in `frame` (UCS to world).
  void buildShoulder();
  void buildShoulder(const OdGeMatrix3d& frame);
  void placeTexts(const OdGePoint3d& startPt, const OdGePoint3d& dimPt, const OdGePoint3d& endPt,
                  const OdGeMatrix3d& ucsToWorld);

  OdString m_xFormat;
  OdString m_yFormat;
  bool m_xUp = true;
  OdCmColor m_dimColor;
  OdDbMTextPtr m_xTextObj;
  OdDbMTextPtr m_yTextObj;
  OdDbMTextPtr m_thirdTextObj;
  OdGePoint3d m_startPt;
  OdGePoint3d m_dimPt;
  OdGePoint3d m_endPt;
};

typedef OdSmartPtr<OdDbNewDimCoor> OdDbNewDimCoorPtr;

#endif
