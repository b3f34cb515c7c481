#include "GlobalShared.h"

namespace {

bool isDigit(OdChar c) {
  return c >= OD_T('0') && c <= OD_T('9');
}

/// Optional sign, digits, exactly one '.', at least one digit in all.
bool isPlainDecimal(const OdString& text) {
  int pos = 0;
  const int length = text.getLength();
  if (pos < length && (text.getAt(pos) == OD_T('-') || text.getAt(pos) == OD_T('+')))
    ++pos;
  int digits = 0;
  int points = 0;
  for (; pos < length; ++pos) {
    const OdChar c = text.getAt(pos);
    if (isDigit(c))
      ++digits;
    else if (c == OD_T('.'))
      ++points;
    else
      return false;
  }
  return digits > 0 && points == 1;
}

} // namespace

OdString GlobalShared::CStringRemoveZero(OdString text) {
  if (!isPlainDecimal(text))
    return text;
  int end = text.getLength();
  while (end > 0 && text.getAt(end - 1) == OD_T('0'))
    --end;
  if (end > 0 && text.getAt(end - 1) == OD_T('.'))
    --end;
  OdString result = text.left(end);
  // ".000" or "-.0" lose every digit; they are zero.
  bool hasDigit = false;
  for (int i = 0; i < result.getLength(); ++i)
    hasDigit = hasDigit || isDigit(result.getAt(i));
  return hasDigit ? result : OdString(OD_T("0"));
}

void GlobalShared::StrSeparate(const OdString& text, const OdString& separator,
                               OdArray<OdString>& parts) {
  parts.clear();
  if (text.isEmpty())
    return;
  if (separator.isEmpty()) {
    parts.append(text);
    return;
  }
  int start = 0;
  for (;;) {
    const int found = text.find(separator.c_str(), start);
    if (found < 0) {
      parts.append(text.mid(start));
      return;
    }
    parts.append(text.mid(start, found - start));
    start = found + separator.getLength();
  }
}
