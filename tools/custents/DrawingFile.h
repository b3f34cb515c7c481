#ifndef CUSTENTS_DRAWING_FILE_H
#define CUSTENTS_DRAWING_FILE_H

#include "DbDatabase.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

/// A drawing file as the commands load it: the database and what the reader left out.
struct LoadedDrawing {
  OdDbDatabasePtr database;
  /// What the reader read but could not keep (entities of unknown types, ...), in UTF-8.
  std::vector<std::string> notes;
  std::uintmax_t fileSize = 0;
};

/// Loads a DXF drawing with the drawing-file hooks in force, so proxies of a loaded module's
/// classes come back as live objects. Throws std::runtime_error with the reader's message
/// (which names the offending line of a malformed file) when the file cannot be read.
LoadedDrawing loadDrawing(const std::string& path);

/// Saves database as a DXF drawing; the file at path is replaced only when the whole drawing
/// was written. Throws std::runtime_error with the writer's message on failure.
void saveDrawing(OdDbDatabase* database, const std::string& path);

/// The extension of a path in lower case, without the dot ("" when there is none), so that
/// OUT.SVG and out.svg name the same format.
std::string lowerCaseExtension(const std::string& path);

/// The check of an output path's format: empty when path ends in one of the extensions (a
/// list like "svg|png", matched ignoring case), else the message a user sees.
std::string checkOutputExtension(const std::string& path, const std::string& extensions);

/// Files from this many entities on are long batch work: the commands report progress.
constexpr std::size_t kProgressThreshold = 100000;

/// Prints "label: done / total (percent%)" to a stream every tenth of the way, when the work is
/// at least threshold items long; shorter work prints nothing, so ordinary runs stay quiet.
class ProgressReporter {
public:
  ProgressReporter(std::string label, std::size_t total, std::ostream& out,
                   std::size_t threshold = kProgressThreshold);
  /// Tells how many items are done; prints when a new tenth is reached.
  void update(std::size_t done);

private:
  std::string m_label;
  std::size_t m_total;
  std::ostream& m_out;
  bool m_active;
  int m_lastTenth = 0;
};

#endif
