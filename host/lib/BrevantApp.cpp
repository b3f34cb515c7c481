#include "BrevantApp.h"

#include "DbDatabase.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

const char kUtf8Bom[] = "\xEF\xBB\xBF";

struct ProfileText {
  std::vector<std::string> lines; // without line ends
  bool hasBom = false;
  bool crlf = false;
};

bool isBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

std::string trimmed(const std::string& text) {
  std::size_t begin = 0;
  std::size_t end = text.size();
  while (begin < end && isBlank(text[begin]))
    ++begin;
  while (end > begin && isBlank(text[end - 1]))
    --end;
  return text.substr(begin, end - begin);
}

char asciiLower(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

bool sameName(const std::string& a, const std::string& b) {
  if (a.size() != b.size())
    return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (asciiLower(a[i]) != asciiLower(b[i]))
      return false;
  }
  return true;
}

/// Reads the profile. False only when the file exists but cannot be read; a missing file is
/// an empty profile.
bool readProfile(const std::string& path, ProfileText& profile) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (status.type() == std::filesystem::file_type::not_found)
    return true;
  if (error || status.type() != std::filesystem::file_type::regular)
    return false;
  std::ifstream in(path, std::ios::binary);
  if (!in)
    return false;
  std::string line;
  bool first = true;
  while (std::getline(in, line)) {
    if (first && line.compare(0, 3, kUtf8Bom) == 0) {
      profile.hasBom = true;
      line.erase(0, 3);
    }
    first = false;
    if (!line.empty() && line.back() == '\r') {
      profile.crlf = true;
      line.pop_back();
    }
    profile.lines.push_back(line);
  }
  return !in.bad();
}

/// The section name of a "[name]" line, or false for any other line.
bool sectionOf(const std::string& line, std::string& name) {
  const std::string text = trimmed(line);
  if (text.size() < 2 || text.front() != '[')
    return false;
  const std::size_t close = text.find(']');
  if (close == std::string::npos)
    return false;
  name = trimmed(text.substr(1, close - 1));
  return true;
}

/// The key and value of a "key=value" line, or false for a comment or any other line.
bool entryOf(const std::string& line, std::string& key, std::string& value) {
  const std::string text = trimmed(line);
  if (text.empty() || text.front() == ';' || text.front() == '#' || text.front() == '[')
    return false;
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos)
    return false;
  key = trimmed(text.substr(0, equals));
  value = trimmed(text.substr(equals + 1));
  return true;
}

/// Line index of the first "[section]" line, or -1.
long findSection(const ProfileText& profile, const std::string& section) {
  std::string name;
  for (std::size_t i = 0; i < profile.lines.size(); ++i) {
    if (sectionOf(profile.lines[i], name) && sameName(name, section))
      return static_cast<long>(i);
  }
  return -1;
}

/// A whole decimal integer in the range of int: optional sign, then digits only.
bool parseWholeInt(const std::string& text, int& out) {
  std::size_t pos = 0;
  bool negative = false;
  if (pos < text.size() && (text[pos] == '+' || text[pos] == '-')) {
    negative = text[pos] == '-';
    ++pos;
  }
  if (pos == text.size())
    return false;
  long long magnitude = 0;
  const long long limit = negative ? -static_cast<long long>(INT_MIN) : INT_MAX;
  for (; pos < text.size(); ++pos) {
    const char c = text[pos];
    if (c < '0' || c > '9')
      return false;
    magnitude = magnitude * 10 + (c - '0');
    if (magnitude > limit)
      return false;
  }
  out = static_cast<int>(negative ? -magnitude : magnitude);
  return true;
}

bool hasLineBreak(const std::string& text) {
  return text.find_first_of("\r\n") != std::string::npos;
}

} // namespace

int CBrevantApp::GetProfileInt(const OdString& section, const OdString& key,
                               int defaultValue) const {
  const std::string path = profilePath().toUtf8();
  if (path.empty())
    return defaultValue;
  ProfileText profile;
  if (!readProfile(path, profile))
    return defaultValue;
  const long start = findSection(profile, section.toUtf8());
  if (start < 0)
    return defaultValue;

  const std::string wantedKey = trimmed(key.toUtf8());
  std::string name, lineKey, lineValue;
  for (std::size_t i = static_cast<std::size_t>(start) + 1; i < profile.lines.size(); ++i) {
    if (sectionOf(profile.lines[i], name))
      break;
    if (!entryOf(profile.lines[i], lineKey, lineValue) || !sameName(lineKey, wantedKey))
      continue;
    int value = 0;
    return parseWholeInt(lineValue, value) ? value : defaultValue;
  }
  return defaultValue;
}

bool CBrevantApp::WriteProfileInt(const OdString& section, const OdString& key, int value) {
  const std::string path = profilePath().toUtf8();
  const std::string sectionName = trimmed(section.toUtf8());
  const std::string keyName = trimmed(key.toUtf8());
  if (path.empty() || sectionName.empty() || keyName.empty() || hasLineBreak(sectionName) ||
      hasLineBreak(keyName) || sectionName.find(']') != std::string::npos ||
      keyName.find('=') != std::string::npos || keyName.front() == ';' || keyName.front() == '#' ||
      keyName.front() == '[')
    return false;

  ProfileText profile;
  if (!readProfile(path, profile))
    return false;

  const std::string entry = keyName + "=" + std::to_string(value);
  const long start = findSection(profile, sectionName);
  if (start < 0) {
    if (!profile.lines.empty() && !trimmed(profile.lines.back()).empty())
      profile.lines.push_back(std::string());
    profile.lines.push_back("[" + sectionName + "]");
    profile.lines.push_back(entry);
  } else {
    // Walk the section: rewrite the key's line, or remember where the section's last
    // non-blank line is so that a new key goes right after it.
    std::size_t insertAt = static_cast<std::size_t>(start) + 1;
    bool replaced = false;
    std::string name, lineKey, lineValue;
    for (std::size_t i = insertAt; i < profile.lines.size(); ++i) {
      if (sectionOf(profile.lines[i], name))
        break;
      if (entryOf(profile.lines[i], lineKey, lineValue) && sameName(lineKey, keyName)) {
        profile.lines[i] = lineKey + "=" + std::to_string(value);
        replaced = true;
        break;
      }
      if (!trimmed(profile.lines[i]).empty())
        insertAt = i + 1;
    }
    if (!replaced)
      profile.lines.insert(profile.lines.begin() + static_cast<long>(insertAt), entry);
  }

  std::error_code error;
  const std::filesystem::path target(path);
  if (target.has_parent_path())
    std::filesystem::create_directories(target.parent_path(), error);

  const std::string temporary = path + ".tmp" + std::to_string(static_cast<long>(getpid()));
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    if (!out)
      return false;
    if (profile.hasBom)
      out << kUtf8Bom;
    const char* lineEnd = profile.crlf ? "\r\n" : "\n";
    for (const std::string& line : profile.lines)
      out << line << lineEnd;
    out.flush();
    if (!out) {
      out.close();
      std::remove(temporary.c_str());
      return false;
    }
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    std::remove(temporary.c_str());
    return false;
  }
  return true;
}

void CBrevantApp::setProfilePath(const OdString& path) {
  m_profilePath = path;
}

OdString CBrevantApp::profilePath() const {
  if (!m_profilePath.isEmpty())
    return m_profilePath;
  const char* explicitPath = std::getenv("CUSTENTS_PROFILE");
  if (explicitPath && *explicitPath)
    return OdString(explicitPath);
  const char* home = std::getenv("HOME");
  if (home && *home)
    return OdString((std::string(home) + "/.config/custents/profile.ini").c_str());
  return OdString();
}

double CDrawingSettings::GetCurrentScale() const {
  return m_database ? m_database->getDIMSCALE() : 1.0;
}

bool CDrawingSettings::SetCurrentScale(double scale) {
  if (!m_database || !std::isfinite(scale) || scale <= 0.0)
    return false;
  m_database->setDIMSCALE(scale);
  return true;
}

CDrawingSettings* CBrevantApp::GetDrawingSettings(OdDbDatabase* database) {
  if (!database)
    return nullptr;
  std::unique_ptr<CDrawingSettings>& settings = m_drawingSettings[database];
  if (!settings)
    settings = std::make_unique<CDrawingSettings>(database);
  return settings.get();
}

CBrevantApp* TheApp() {
  static CBrevantApp app;
  return &app;
}
