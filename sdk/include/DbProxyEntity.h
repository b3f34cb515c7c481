#ifndef OD_DB_PROXY_ENTITY_H
#define OD_DB_PROXY_ENTITY_H

/// Stand-ins for objects whose class no loaded module knows. A drawing read without the module
/// that defines a class keeps each of its objects as a proxy: the object's DWG streams exactly
/// as read, who wrote it, and for entities the graphics metafile its class drew when it was
/// saved. Saving writes the parts back unchanged, so the module finds its objects intact when
/// the drawing is opened with it again, and any reader can still show the entities.

#include "DbEntity.h"
#include "OdArray.h"

class OdGiWorldDraw;

/// One entry of a proxy's handle stream: the DWG reference code (2 soft owner, 3 hard owner,
/// 4 soft pointer, 5 hard pointer; a DXF proxy writes them as groups 350, 360, 330 and 340)
/// and the handle.
struct OdDbProxyReference {
  OdUInt8 code = 0;
  OdDbHandle handle;

  friend bool operator==(const OdDbProxyReference& a, const OdDbProxyReference& b) {
    return a.code == b.code && a.handle == b.handle;
  }
  friend bool operator!=(const OdDbProxyReference& a, const OdDbProxyReference& b) {
    return !(a == b);
  }
};
typedef OdArray<OdDbProxyReference> OdDbProxyReferenceArray;

/// The parts of a proxy as a value: what the drawing reader fills in and the writer writes
/// back. Each stream is kept as bytes with its exact size in bits, since DWG streams need not
/// end on a byte boundary. Setters refuse a bit size larger than the bytes hold with
/// OdError(eInvalidInput), changing nothing.
class OdDbProxyData {
public:
  /// The class the object belongs to ("CustEntsLine") and its DXF name ("CUSTENTSLINE").
  const OdString& originalClassName() const { return m_className; }
  void setOriginalClassName(const OdString& name) { m_className = name; }
  const OdString& originalDxfName() const { return m_dxfName; }
  void setOriginalDxfName(const OdString& name) { m_dxfName = name; }
  /// The application that defines the class (the CLASSES record's group 3).
  const OdString& applicationDescription() const { return m_appName; }
  void setApplicationDescription(const OdString& name) { m_appName = name; }

  /// The class's proxy flags (OdDbProxyEntity::AllowedOperationBit).
  OdUInt32 proxyFlags() const { return m_proxyFlags; }
  /// Throws OdError(eInvalidInput) for bits outside kAllAllowedBits | kDisableProxyWarning.
  void setProxyFlags(OdUInt32 flags);

  /// The DWG version (33 for AC1032) and maintenance release the data was written in.
  int dwgVersion() const { return m_dwgVersion; }
  int maintenanceVersion() const { return m_maintVersion; }
  /// Throws OdError(eInvalidInput) for negative numbers.
  void setVersion(int dwgVersion, int maintenanceVersion);

  /// The data stream: the object's own fields in DWG bit codes.
  const OdUInt8Array& data() const { return m_data; }
  OdUInt64 dataBitSize() const { return m_dataBits; }
  void setData(const OdUInt8Array& bytes, OdUInt64 bitSize);
  /// The string stream (R2007 and later keep strings apart from the data).
  const OdUInt8Array& strings() const { return m_strings; }
  OdUInt64 stringBitSize() const { return m_stringBits; }
  void setStrings(const OdUInt8Array& bytes, OdUInt64 bitSize);
  /// The handle stream as the reference list it is made of.
  const OdDbProxyReferenceArray& references() const { return m_references; }
  /// Throws OdError(eInvalidInput) for a code other than 2..5.
  void setReferences(const OdDbProxyReferenceArray& references);

  /// The graphics metafile (empty: the proxy shows nothing). Only entities draw it.
  const OdUInt8Array& graphicsMetafile() const { return m_graphics; }
  void setGraphicsMetafile(const OdUInt8Array& bytes) { m_graphics = bytes; }

  /// Writes every part for a copy; readIn reads them back and returns the filer's status or
  /// eDwgObjectImproperlyRead for parts that do not hold together, leaving this unchanged on
  /// failure.
  void writeOut(OdDbDwgFiler* filer) const;
  OdResult readIn(OdDbDwgFiler* filer);

  friend bool operator==(const OdDbProxyData& a, const OdDbProxyData& b);
  friend bool operator!=(const OdDbProxyData& a, const OdDbProxyData& b) { return !(a == b); }

private:
  OdString m_className;
  OdString m_dxfName;
  OdString m_appName;
  OdUInt32 m_proxyFlags = 0;
  int m_dwgVersion = 33;
  int m_maintVersion = 0;
  OdUInt8Array m_data;
  OdUInt64 m_dataBits = 0;
  OdUInt8Array m_strings;
  OdUInt64 m_stringBits = 0;
  OdDbProxyReferenceArray m_references;
  OdUInt8Array m_graphics;
};

/// A proxy for an entity: draws the graphics its class left and refuses every change to its
/// shape, because the bytes it keeps cannot be rewritten without the class.
class OdDbProxyEntity : public OdDbEntity {
  ODRX_DECLARE_MEMBERS(OdDbProxyEntity);

  /// What the class allows a proxy of it to undergo (the SDK's flag values; a drawing's
  /// CLASSES record carries them).
  enum AllowedOperationBit : OdUInt32 {
    kNoOperation = 0,
    kEraseAllowed = 0x1,
    kTransformAllowed = 0x2,
    kColorChangeAllowed = 0x4,
    kLayerChangeAllowed = 0x8,
    kLinetypeChangeAllowed = 0x10,
    kLinetypeScaleChangeAllowed = 0x20,
    kVisibilityChangeAllowed = 0x40,
    kCloningAllowed = 0x80,
    kLineWeightChangeAllowed = 0x100,
    kPlotStyleNameChangeAllowed = 0x200,
    kAllAllowedBits = 0xBFF,
    kDisableProxyWarning = 0x400,
    kMaterialChangeAllowed = 0x800
  };
  enum GraphicsMetafileType { kNoMetafile = 0, kBoundingBox = 1, kFullGraphics = 2 };

  OdDbProxyEntity();

  OdString originalClassName() const;
  OdString originalDxfName() const;
  OdString applicationDescription() const;
  OdUInt32 proxyFlags() const;
  /// Full graphics when the metafile draws something, a bounding box when it only gives
  /// extents, none when it is empty or unreadable.
  GraphicsMetafileType graphicsMetafileType() const;

  const OdDbProxyData& proxyData() const;
  void setProxyData(const OdDbProxyData& data);

  /// The common entity data, then every part of the proxy data, so copies and clones keep it
  /// all.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;

protected:
  /// Replays the graphics metafile (oddbReplayProxyGraphics); returns true.
  bool subWorldDraw(OdGiWorldDraw* worldDraw) const override;
  /// The bytes cannot follow a transform: eNotApplicable, unchanged.
  OdResult subTransformBy(const OdGeMatrix3d& xform) override;
  /// There are no standard entities to give: eNotApplicable.
  OdResult subExplode(OdRxObjectPtrArray& entitySet) const override;
  /// The metafile's extents command when it has a valid one, else the replayed primitives'
  /// box; eInvalidExtents when neither gives one.
  OdResult subGetGeomExtents(OdGeExtents3d& extents) const override;

private:
  OdDbProxyData m_data;
};
typedef OdSmartPtr<OdDbProxyEntity> OdDbProxyEntityPtr;

/// A proxy for a non-graphical object.
class OdDbProxyObject : public OdDbObject {
  ODRX_DECLARE_MEMBERS(OdDbProxyObject);

  OdDbProxyObject();

  OdString originalClassName() const;
  OdString originalDxfName() const;
  OdString applicationDescription() const;
  OdUInt32 proxyFlags() const;

  const OdDbProxyData& proxyData() const;
  void setProxyData(const OdDbProxyData& data);

  /// The object's data, then every part of the proxy data.
  OdResult dwgInFields(OdDbDwgFiler* filer) override;
  void dwgOutFields(OdDbDwgFiler* filer) const override;

private:
  OdDbProxyData m_data;
};
typedef OdSmartPtr<OdDbProxyObject> OdDbProxyObjectPtr;

/// Draws a graphics metafile (the format in GiProxyGraphicsWriter.h) onto a drawing session.
/// Decoded: extents (1), circle (2), three-point circle (3), arc (4), three-point arc (5),
/// polyline (6), polygon (7), xline (12), ray (13), colour (14), layer index (16), linetype
/// index (18), fill (20), true colour (22), lineweight (23), linetype scale (24), push and pop
/// matrix (29, 31), polyline with normal (32) and unicode text (36); other commands are
/// skipped by their size. Layer and linetype indices count the records of database's tables
/// in order; without a database, or for an index beyond them, they change nothing (32767 is
/// by layer).
///
/// Every read is checked against the command's size and the buffer. The replay stops at the
/// first command that is cut short, claims a size below its payload or past the end, holds a
/// negative count or a non-finite number: the commands before it are drawn, and the result is
/// eInvalidInput (eOk when all commands were read, or when the session asked to abort through
/// regenAbort()). Matrices pushed by the metafile are popped at the end either way.
OdResult oddbReplayProxyGraphics(const OdUInt8Array& metafile, OdGiWorldDraw* worldDraw,
                                 OdDbDatabase* database = nullptr);

/// The box of the metafile's extents command: false when it has none, or one that is not a
/// finite box with its minimum below its maximum.
bool oddbProxyGraphicsExtents(const OdUInt8Array& metafile, OdGeExtents3d& extents);

#endif
