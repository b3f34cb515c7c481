#ifndef HOST_BREVANT_APP_H
#define HOST_BREVANT_APP_H

/// The host application object: the settings that modules read from the host's profile (for
/// example the decimal places of measured texts, "dimAccurity" in section "options").

#include "OdString.h"

#include <map>
#include <memory>

class OdDbDatabase;

/// The drawing settings the host keeps for one drawing. The drawing scale is the drawing's
/// DIMSCALE, so it is saved with the drawing and every tool agrees on it.
class CDrawingSettings {
public:
  explicit CDrawingSettings(OdDbDatabase* database) : m_database(database) {}
  /// The current drawing scale (100 for a drawing at 1:100); 1 without a database.
  double GetCurrentScale() const;
  /// False, with no change, for a scale that is not a positive finite number or without a
  /// database.
  bool SetCurrentScale(double scale);

private:
  OdDbDatabase* m_database;
};

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

  /// The settings of database's drawing; null for a null database. Asking again for the same
  /// database gives the same object, which lives as long as the application. The settings
  /// hold no values of their own (the scale lives in the drawing), so a database created
  /// later at the address of a destroyed one is served correctly by the same object; the
  /// object must not be used while its database does not exist.
  CDrawingSettings* GetDrawingSettings(OdDbDatabase* database);

private:
  OdString m_profilePath;
  std::map<const OdDbDatabase*, std::unique_ptr<CDrawingSettings>> m_drawingSettings;
};

/// The one application object of the process.
CBrevantApp* TheApp();

#endif
