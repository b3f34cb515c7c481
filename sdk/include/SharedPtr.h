#ifndef OD_SHARED_PTR_H
#define OD_SHARED_PTR_H

/// The SDK's reference-counted pointer for objects that are not run-time objects (grip data).
/// The standard one does the job, so the SDK name is an alias for it.

#include <memory>

template <class T> using OdSharedPtr = std::shared_ptr<T>;

#endif
