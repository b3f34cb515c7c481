#ifndef OD_RX_DICTIONARY_H
#define OD_RX_DICTIONARY_H

/// The process-wide class dictionary: every registered class by name, in registration order,
/// and an index by DXF name.

#include "RxObject.h"

/// The registered class of that name, or null.
OdRxClass* odrxGetClass(const OdString& className);
/// Every registered class, in registration order.
OdArray<OdRxClass*> odrxRegisteredClasses();
/// The class registered under a DXF name (compared exactly, letter case included). Several
/// classes may share one DXF name; they all stay registered and this returns the one that was
/// registered first among those still registered. A drawing file's own class records decide
/// between them when a drawing is read.
OdRxClass* odrxClassByDxfName(const OdString& dxfName);
/// All registered classes of a DXF name, in registration order.
OdArray<OdRxClass*> odrxClassesByDxfName(const OdString& dxfName);

/// Registers the platform's run-time and database classes (the database module). Calls nest:
/// only the first registers and only the matching last odUninitialize removes them.
void odInitialize();
void odUninitialize();
/// The built-in module that owns the database classes (OdDbObject, OdDbEntity, ...); null
/// outside odInitialize/odUninitialize.
OdRxModule* odrxDatabaseModule();

#endif
