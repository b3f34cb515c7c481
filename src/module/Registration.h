#ifndef CUSTENTS_REGISTRATION_H
#define CUSTENTS_REGISTRATION_H

namespace custents {

/// Registers every class of the module in table order, attaching each class's extensions
/// right after it, then hands the in-place text-editing callbacks to the host. A class that is
/// registered already stops the routine with OdError(313); classes registered before it stay.
void registerClasses();

/// Detaches the extensions and unregisters the classes in the module's fixed unregistration
/// order, then takes the text-editing callbacks back. A class that is not registered stops
/// the routine with OdError(255).
void unregisterClasses();

} // namespace custents

#endif
