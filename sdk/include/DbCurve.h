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
};

typedef OdSmartPtr<OdDbCurve> OdDbCurvePtr;

#endif
