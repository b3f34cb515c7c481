#include "DrawingFile.h"

#include "DbDxfFile.h"

#include <cctype>
#include <filesystem>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

LoadedDrawing loadDrawing(const std::string& path) {
  std::error_code error;
  // The reader would open a folder and then fail to read it; say what is wrong instead.
  if (std::filesystem::is_directory(path, error))
    throw std::runtime_error("cannot read the drawing " + path + ": it is a folder");
  LoadedDrawing loaded;
  OdString message;
  std::vector<OdString> notes;
  if (odDbReadDxf(OdString::fromUtf8(path), loaded.database, &message, &notes) != eOk ||
      loaded.database.isNull())
    throw std::runtime_error("cannot read the drawing: " + message.toUtf8());
  for (const OdString& note : notes)
    loaded.notes.push_back(note.toUtf8());
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  loaded.fileSize = error ? 0 : size;
  return loaded;
}

void saveDrawing(OdDbDatabase* database, const std::string& path) {
  OdString message;
  if (odDbWriteDxf(database, OdString::fromUtf8(path), &message) != eOk)
    throw std::runtime_error("cannot write " + path + ": " + message.toUtf8());
}

std::string lowerCaseExtension(const std::string& path) {
  std::string extension = std::filesystem::path(path).extension().string();
  if (!extension.empty())
    extension.erase(0, 1);
  for (char& c : extension)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension;
}

std::string checkOutputExtension(const std::string& path, const std::string& extensions) {
  const std::string extension = lowerCaseExtension(path);
  std::istringstream list(extensions);
  for (std::string allowed; std::getline(list, allowed, '|');)
    if (!extension.empty() && extension == allowed)
      return std::string();
  std::string names;
  std::istringstream again(extensions);
  for (std::string allowed; std::getline(again, allowed, '|');)
    names += (names.empty() ? "." : " or .") + allowed;
  return "the output must be a " + names + " file: " + path;
}

ProgressReporter::ProgressReporter(std::string label, std::size_t total, std::ostream& out,
                                   std::size_t threshold)
    : m_label(std::move(label)), m_total(total), m_out(out), m_active(total >= threshold) {}

void ProgressReporter::update(std::size_t done) {
  if (!m_active || m_total == 0)
    return;
  const int tenth = static_cast<int>(done * 10 / m_total);
  if (tenth <= m_lastTenth)
    return;
  m_lastTenth = tenth;
  m_out << m_label << ": " << done << " / " << m_total << " (" << tenth * 10 << "%)\n";
  m_out.flush();
}
