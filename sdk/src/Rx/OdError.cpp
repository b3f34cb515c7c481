#include "OdError.h"

#include "RxObject.h"

namespace {
OdString classNameOf(const OdRxClass* cls) {
  return cls ? cls->name() : OdString(OD_T("(unregistered class)"));
}
} // namespace

OdError::OdError(OdResult code) : OdError(code, OdString(odResultText(code))) {}

OdError::OdError(OdResult code, const OdString& message)
    : m_code(code), m_message(message), m_utf8(message.toUtf8()) {}

OdError::OdError(const OdString& message) : OdError(eExtendedError, message) {}

OdError_NotThatKindOfClass::OdError_NotThatKindOfClass(const OdRxClass* objectClass,
                                                       const OdRxClass* wantedClass)
    : OdError(eNotThatKindOfClass, OD_T("Object of class ") + classNameOf(objectClass) +
                                       OD_T(" can't be cast to ") + classNameOf(wantedClass)),
      m_objectClass(objectClass), m_wantedClass(wantedClass) {}

void odThrowNotThatKindOfClass(const OdRxObject* object, const OdRxClass* wanted) {
  throw OdError_NotThatKindOfClass(object ? object->isA() : nullptr, wanted);
}
