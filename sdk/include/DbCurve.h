#ifndef OD_DB_CURVE_H
#define OD_DB_CURVE_H

/// The common interface of entities that are one continuous path (lines, polylines, arcs,
/// circles). Callers that measure, trim or snap along a path use these queries without knowing
/// the entity's class.
///
/// A curve is parametrised from getStartParam() to getEndParam(); each class documents what
/// its parameter means. Points given to the *AtPoint queries must lie on the curve (within
/// the global point tolerance); a point off the curve gives eInvalidInput.

#include "DbEntity.h"

/// One straight or circular piece of a curve in world coordinates. Lines, arcs and polylines
/// describe themselves as pieces, so that one routine intersects any two of them.
struct OdDbCurvePiece {
  enum Kind { kLine, kArc };

  Kind kind = kLine;
  /// Line: its ends. Arc: the points where its sweep starts and ends.
  OdGePoint3d start;
  OdGePoint3d end;
  /// Arc only: centre, radius, unit normal, unit vector from the centre towards start, and
  /// the sweep in (0, 2π], counter-clockwise about normal.
  OdGePoint3d center;
  double radius = 0.0;
  OdGeVector3d normal;
  OdGeVector3d startVector;
  double sweep = 0.0;
  /// A line piece that the OdDb::Intersect modes may extend: only the piece of a line entity
  /// itself (polylines, arcs and exploded pieces are never extended).
  bool extendable = false;
};
typedef OdArray<OdDbCurvePiece> OdDbCurvePieceArray;

class OdDbCurve : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbCurve);

  /// Default: true when the start and end points coincide (false when either is unknown).
  virtual bool isClosed() const;
  /// Default: false. A periodic curve can be evaluated past its end parameter.
  virtual bool isPeriodic() const;

  /// Default: eNotImplemented.
  virtual OdResult getStartParam(double& startParam) const;
  /// Default: eNotImplemented.
  virtual OdResult getEndParam(double& endParam) const;
  /// Default: the point at the start parameter.
  virtual OdResult getStartPoint(OdGePoint3d& startPoint) const;
  /// Default: the point at the end parameter.
  virtual OdResult getEndPoint(OdGePoint3d& endPoint) const;

  /// Default: eNotImplemented. A parameter outside the curve's range gives eInvalidInput.
  virtual OdResult getPointAtParam(double param, OdGePoint3d& pointOnCurve) const;
  /// Default: eNotImplemented.
  virtual OdResult getParamAtPoint(const OdGePoint3d& pointOnCurve, double& param) const;
  /// The length of the curve from its start to param. Default: eNotImplemented.
  virtual OdResult getDistAtParam(double param, double& dist) const;
  /// Default: eNotImplemented.
  virtual OdResult getParamAtDist(double dist, double& param) const;
  /// Default: the distance at the parameter of the point.
  virtual OdResult getDistAtPoint(const OdGePoint3d& pointOnCurve, double& dist) const;
  /// The point of the curve nearest to givenPoint; with extend, of the curve extended past its
  /// ends where the class can extend it. Default: eNotImplemented.
  virtual OdResult getClosestPointTo(const OdGePoint3d& givenPoint, OdGePoint3d& pointOnCurve,
                                     bool extend = false) const;
  /// The area enclosed by the curve (closed between its ends when it is open).
  /// Default: eNotImplemented.
  virtual OdResult getArea(double& area) const;

protected:
  OdDbCurve();

  /// Appends the curve's straight and circular pieces and returns true; false (nothing
  /// appended) when the class is not made of such pieces. Default: false.
  virtual bool subGetPieces(OdDbCurvePieceArray& pieces) const;

  /// For a curve with pieces (see subGetPieces): the points where its pieces meet those of
  /// other, appended to points without duplicates (a point where two pieces of one operand
  /// meet, such as a polyline vertex, counts once). other is taken as its own pieces when it
  /// is a line, arc or polyline, else as the pieces of what other->explode() gives (and of
  /// what those explode into, a few levels deep), so a custom entity that explodes into lines
  /// intersects as those lines do. Only line entities extend: kExtendThis extends this when it
  /// is a line, kExtendArg extends other when it is a line. Pieces that overlap along a stretch
  /// (collinear lines, arcs on one circle) give the ends of the overlap; two extended collinear
  /// lines give nothing. Pieces in different planes give the points where they cross. Results:
  /// eNullEntityPointer for no other; the result of other's explode when other is neither a
  /// curve with pieces nor explodable; eNotImplemented, no points, for a curve without pieces.
  /// The sub-entity markers are ignored.
  OdResult subIntersectWith(const OdDbEntity* other, OdDb::Intersect intType,
                            OdGePoint3dArray& points, OdGsMarker thisGsMarker,
                            OdGsMarker otherGsMarker) const override;

private:
  /// The pieces of entity: its own, or those of its explode() output down to depth levels.
  static OdResult collectPieces(const OdDbEntity* entity, OdDbCurvePieceArray& pieces, int depth);
};

typedef OdSmartPtr<OdDbCurve> OdDbCurvePtr;

#endif
