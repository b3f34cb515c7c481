#ifndef CUSTENTS_NOT_LOADED_H
#define CUSTENTS_NOT_LOADED_H

// What a composite entity does when a standard class it is built from is not registered.

#include "OdError.h"
#include "OdString.h"
#include "SmartPtr.h"

namespace custents {

/// The error for a missing standard class: "OdDbOdDb", the class name without its "OdDb"
/// prefix and "is not loaded", run together ("OdDbOdDbLineis not loaded"). The doubled prefix
/// and the missing blank are deliberate: hosts have always shown and matched this text.
OdError notLoadedError(const OdString& nameWithoutPrefix);

/// A new free-standing entity of a standard class; throws notLoadedError when the class is not
/// registered.
template <class T> OdSmartPtr<T> createStandardEntity(const OdString& nameWithoutPrefix) {
  if (!T::desc())
    throw notLoadedError(nameWithoutPrefix);
  return T::createObject();
}

} // namespace custents

#endif
