#ifndef HOST_BREVANT_APP_H
#define HOST_BREVANT_APP_H

/// The host application object: the settings that modules read from the host's profile (for
/// example the decimal places of measured texts, "dimAccurity" in section "options").

#include "OdString.h"

/// The profile is a UTF-8 INI file:
///   [options]
///   dimAccurity=3
/// Section and key names are compared without regard to ASCII letter case, as Windows profiles
/// compare them; white space around names and values is ignored; lines starting with ';' or
/// '#' are comments. When a section or key occurs more than once, the first occurrence counts.
/// The file is read on every call, so a change made by another process is seen at once.
class CBrevantApp {
public:
  /// The integer stored under section/key, or defaultValue when the profile file, the section
  /// or the key is missing, or the value is not a whole decimal integer in the range of int
  /// (an optional sign and digits only: "3x", "", "1.5" and "99999999999" give the default).
  int GetProfileInt(const OdString& section, const OdString& key, int defaultValue) const;
  /// Stores value under section/key: an existing key's line is rewritten, a new key goes at the
  /// end of its section, a new section at the end of the file; every other line is kept as it
  /// was. The file is written beside the old one and renamed over it, so a failed write leaves
  /// the old profile intact; missing folders are created. False when the file cannot be written
  /// or a name is unusable (empty, or containing a line break, '=' in a key, ']' in a section).
  bool WriteProfileInt(const OdString& section, const OdString& key, int value);

  /// Uses the profile file at path from now on; an empty path goes back to the default:
  /// $CUSTENTS_PROFILE when that is set and not empty, else
  /// $HOME/.config/custents/profile.ini (no profile at all when HOME is unset too).
  void setProfilePath(const OdString& path);
  /// The profile file in use, the default worked out at the time of the call.
  OdString profilePath() const;

private:
  OdString m_profilePath;
};

/// The one application object of the process.
CBrevantApp* TheApp();

#endif
