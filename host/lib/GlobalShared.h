#ifndef HOST_GLOBAL_SHARED_H
#define HOST_GLOBAL_SHARED_H

/// String helpers of the host that modules use for the texts they show.

#include "OdArray.h"
#include "OdString.h"

class GlobalShared {
public:
  /// Drops the trailing zeros of a decimal number's fraction and then a trailing '.', so a
  /// number formatted with fixed decimals reads naturally: "1.500000" -> "1.5", "2.000" -> "2",
  /// "-0.250" -> "-0.25", "100" -> "100" (no '.', kept). Only a plain decimal (optional sign,
  /// digits, one '.') is changed; any other text, such as "1.50e+3" or "长1.50", comes back
  /// as it was.
  static OdString CStringRemoveZero(OdString text);

  /// Splits text at every occurrence of separator into parts (cleared first). Empty parts are
  /// kept, so "a,,b" gives "a", "", "b" and "a," gives "a", "": n separators always give n + 1
  /// parts. An empty text gives no parts; an empty separator gives the whole text as one part.
  static void StrSeparate(const OdString& text, const OdString& separator,
                          OdArray<OdString>& parts);
};

#endif
