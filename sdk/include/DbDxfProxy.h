#ifndef OD_DB_DXF_PROXY_H
#define OD_DB_DXF_PROXY_H

/// Module objects in drawing files. An entity whose class belongs to a loaded module (not to
/// the platform) is saved as an ACAD_PROXY_ENTITY carrying its DWG streams and the graphics
/// its class draws, so any DXF reader shows it and a reader with the module restores it; a
/// non-graphical module object is saved as an ACAD_PROXY_OBJECT (90 499, no graphics) in the
/// OBJECTS section. A proxy whose class is loaded when the file is read becomes a live object
/// of that class again; one whose class no loaded module knows stays an OdDbProxyEntity or
/// OdDbProxyObject and is written back unchanged. These are the hooks drawing files use unless an
/// application installs its own.

#include "DbDxfFile.h"
#include "OdError.h"

#include <cstddef>

class OdRxClass;

/// A fault in a proxy's groups. item is the position of the offending group among the groups
/// the hook was given (from the entity's first subclass marker), so the drawing reader can
/// report it by its line.
class OdDbDxfProxyReadError : public OdError {
public:
  OdDbDxfProxyReadError(std::size_t item, const OdString& message);
  std::size_t item() const { return m_item; }

private:
  std::size_t m_item;
};

/// The proxy writing and reading, as drawing-file hooks. An application that installs hooks of
/// its own can derive from these to keep module objects working.
class OdDbDxfProxyHooks : public OdDbDxfFileHooks {
public:
  /// One record per class of a module object or kept proxy the drawing holds, in the order
  /// the file first uses them (blocks, then model space, then paper space, then OBJECTS).
  void collectClasses(OdDbDatabase* db, std::vector<OdDbDxfClassRecord>& records) override;
  /// Writes module entities and kept proxy entities as ACAD_PROXY_ENTITY, module objects and
  /// kept proxy objects as ACAD_PROXY_OBJECT; false for others.
  /// Throws OdError when an object's stream cannot be expressed in a proxy.
  bool writeObject(const OdDbObject* object, const std::vector<OdDbDxfClassRecord>& classes,
                   OdString& dxfName, OdDbDxfFiler* filer) override;
  /// Reads an ACAD_PROXY_ENTITY (null for other types). Throws OdDbDxfProxyReadError for
  /// groups that do not make a proxy.
  OdDbObjectPtr readUnknownEntity(const OdString& dxfName,
                                  const std::vector<OdDbDxfClassRecord>& classes,
                                  OdDbDxfFiler* filer) override;
  /// Reads an ACAD_PROXY_OBJECT (null for other types), as readUnknownEntity.
  OdDbObjectPtr readUnknownObject(const OdString& dxfName,
                                  const std::vector<OdDbDxfClassRecord>& classes,
                                  OdDbDxfFiler* filer) override;
};

/// The hooks drawing files use by default.
OdDbDxfProxyHooks* odDbDxfProxyHooks();

/// True for the classes whose objects a drawing file holds as proxies: classes of loaded
/// modules, and the proxy classes themselves.
bool odDbDxfIsProxyClass(const OdRxClass* cls);

#endif
