#ifndef OD_ERROR_H
#define OD_ERROR_H

#include "OdResult.h"
#include "OdString.h"

#include <exception>
#include <string>

class OdRxClass;

/// The platform's exception: a result code and a message.
class OdError : public std::exception {
public:
  explicit OdError(OdResult code);
  OdError(OdResult code, const OdString& message);
  /// An error described by text alone carries eExtendedError.
  explicit OdError(const OdString& message);

  OdResult code() const { return m_code; }
  /// The message given at construction, or the result code's fixed text.
  OdString description() const { return m_message; }
  const char* what() const noexcept override { return m_utf8.c_str(); }

private:
  OdResult m_code;
  OdString m_message;
  std::string m_utf8;
};

/// Thrown when an object is handed to code that needs another class.
class OdError_NotThatKindOfClass : public OdError {
public:
  OdError_NotThatKindOfClass(const OdRxClass* objectClass, const OdRxClass* wantedClass);
  const OdRxClass* objectClass() const { return m_objectClass; }
  const OdRxClass* wantedClass() const { return m_wantedClass; }

private:
  const OdRxClass* m_objectClass;
  const OdRxClass* m_wantedClass;
};

/// Thrown by checked element access with an index out of range.
class OdError_InvalidIndex : public OdError {
public:
  OdError_InvalidIndex() : OdError(eInvalidIndex) {}
};

#endif
