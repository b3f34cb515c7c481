// The host application object: profile settings in a file and one settings object per drawing.

#include "BrevantApp.h"

#include "DbDatabase.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace {

class ProfileTest : public ::testing::Test {
protected:
  void SetUp() override {
    char pattern[] = "/tmp/custents-profile-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(pattern));
    folder = pattern;
    path = folder / "profile.ini";
    TheApp()->setProfilePath(OdString(path.string().c_str()));
  }
  void TearDown() override {
    TheApp()->setProfilePath(OdString());
    std::error_code ignored;
    fs::remove_all(folder, ignored);
  }

  void writeFile(const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
  }
  std::string readFile() const {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
  }
  int accuracy(int defaultValue = -99) const {
    return TheApp()->GetProfileInt(OD_T("options"), OD_T("dimAccurity"), defaultValue);
  }

  fs::path folder;
  fs::path path;
};

TEST_F(ProfileTest, ValueMustBeAWholeIntegerInItsSectionAndKey) {
  EXPECT_EQ(-99, accuracy()) << "no file";
  const char* const read[] = {" 4 ", "-2", "+7", "2147483647", "-2147483648"};
  const int values[] = {4, -2, 7, 2147483647, -2147483647 - 1};
  for (int i = 0; i < 5; ++i) {
    writeFile("[options]\ndimAccurity=" + std::string(read[i]) + "\n");
    EXPECT_EQ(values[i], accuracy()) << read[i];
  }
  const char* const refused[] = {"3x",         "x3",          "1.5", "",     "+",
                                 "2147483648", "-2147483649", "3 4", "0x10", "３"};
  for (const char* value : refused) {
    writeFile("[options]\ndimAccurity=" + std::string(value) + "\n");
    EXPECT_EQ(-99, accuracy()) << value;
  }
  // The key in another section, another key, an empty file.
  for (const char* file : {"[display]\ndimAccurity=3\n", "[options]\nprecision=3\n", ""}) {
    writeFile(file);
    EXPECT_EQ(-99, accuracy()) << file;
  }
  EXPECT_EQ(5, accuracy(5));
}

TEST_F(ProfileTest, NamesIgnoreLetterCaseAndTheFirstOccurrenceCounts) {
  writeFile("; host settings\n"
            "[Display]\n"
            "dimAccurity=9\n"
            "\n"
            "  [ OPTIONS ]  \n"
            "# comment=1\n"
            "  DIMACCURITY = 2\n"
            "dimAccurity=5\n"
            "[options]\n"
            "dimAccurity=6\n");
  EXPECT_EQ(2, accuracy());
  EXPECT_EQ(9, TheApp()->GetProfileInt(OD_T("display"), OD_T("DimAccurity"), 0));
  EXPECT_EQ(0, TheApp()->GetProfileInt(OD_T("options"), OD_T("# comment"), 0));

  // UTF-8 with a byte order mark and CR LF line ends.
  writeFile("\xEF\xBB\xBF[选项]\r\n精度=4\r\n[options]\r\ndimAccurity=3\r\n");
  EXPECT_EQ(3, accuracy());
  EXPECT_EQ(4, TheApp()->GetProfileInt(OdString("选项"), OdString("精度"), 0));
}

TEST_F(ProfileTest, WriteCreatesFolderAndFileThenReadsBack) {
  path = folder / "a" / "b" / "profile.ini";
  TheApp()->setProfilePath(OdString(path.string().c_str()));
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("options"), OD_T("dimAccurity"), 3));
  EXPECT_EQ(3, accuracy());
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("Options"), OD_T("DIMACCURITY"), -12));
  EXPECT_EQ("[options]\ndimAccurity=-12\n", readFile());
}

TEST_F(ProfileTest, WriteKeepsEveryOtherLine) {
  const std::string before = "; comment\n[display]\nzoom=2\n\n[OPTIONS]\nother=1\n"
                             "DimAccurity = 1\nlast=8\n\n[tail]\nx=1\n";
  writeFile(before);
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("options"), OD_T("dimAccurity"), 4));
  std::string after = before;
  after.replace(after.find("DimAccurity = 1"), 15, "DimAccurity=4");
  EXPECT_EQ(after, readFile());

  // A new key goes to the end of its section, before the blank line that separates sections.
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("display"), OD_T("grid"), 10));
  EXPECT_EQ(10, TheApp()->GetProfileInt(OD_T("display"), OD_T("grid"), 0));
  EXPECT_NE(std::string::npos, readFile().find("zoom=2\ngrid=10\n\n[OPTIONS]"));

  // A new section goes to the end of the file.
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("new"), OD_T("k"), 1));
  EXPECT_NE(std::string::npos, readFile().find("x=1\n\n[new]\nk=1\n"));
  EXPECT_EQ(4, accuracy());

  // The byte order mark and the line ends are kept.
  writeFile("\xEF\xBB\xBF[options]\r\ndimAccurity=1\r\n");
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("options"), OD_T("dimAccurity"), 2));
  EXPECT_EQ("\xEF\xBB\xBF[options]\r\ndimAccurity=2\r\n", readFile());
}

TEST_F(ProfileTest, WriteRefusesUnusableNamesAndPaths) {
  writeFile("[options]\ndimAccurity=1\n");
  const std::pair<const char*, const char*> refused[] = {{"", "dimAccurity"},
                                                         {"options", ""},
                                                         {"options", "a=b"},
                                                         {"options", "a\nb"},
                                                         {"opt]ions", "a"}};
  for (const auto& [section, key] : refused)
    EXPECT_FALSE(TheApp()->WriteProfileInt(OdString(section), OdString(key), 2)) << section << key;
  EXPECT_EQ("[options]\ndimAccurity=1\n", readFile());

  // A folder where the file should be: nothing can be read or written.
  TheApp()->setProfilePath(OdString(folder.string().c_str()));
  EXPECT_EQ(-99, accuracy());
  EXPECT_FALSE(TheApp()->WriteProfileInt(OD_T("options"), OD_T("dimAccurity"), 2));
  EXPECT_TRUE(fs::is_directory(folder));
}

TEST_F(ProfileTest, DefaultPathComesFromTheEnvironment) {
  const char* savedProfile = std::getenv("CUSTENTS_PROFILE");
  const std::string saved = savedProfile ? savedProfile : "";
  const char* home = std::getenv("HOME");
  TheApp()->setProfilePath(OdString());

  setenv("CUSTENTS_PROFILE", path.string().c_str(), 1);
  EXPECT_EQ(path.string(), TheApp()->profilePath().toUtf8());
  writeFile("[options]\ndimAccurity=6\n");
  EXPECT_EQ(6, accuracy());

  unsetenv("CUSTENTS_PROFILE");
  if (home) {
    EXPECT_EQ(std::string(home) + "/.config/custents/profile.ini",
              TheApp()->profilePath().toUtf8());
  }

  if (savedProfile)
    setenv("CUSTENTS_PROFILE", saved.c_str(), 1);
}

// --- Drawing settings -------------------------------------------------------------------------

TEST(DrawingSettingsTest, OneObjectPerDrawingWhoseScaleIsItsDimscale) {
  OdDbDatabasePtr first = OdDbDatabase::createObject();
  OdDbDatabasePtr second = OdDbDatabase::createObject();
  CDrawingSettings* settings = TheApp()->GetDrawingSettings(first.get());
  ASSERT_NE(nullptr, settings);
  EXPECT_EQ(settings, TheApp()->GetDrawingSettings(first.get()));
  EXPECT_NE(settings, TheApp()->GetDrawingSettings(second.get()));
  EXPECT_EQ(nullptr, TheApp()->GetDrawingSettings(nullptr));

  // The scale is the drawing's DIMSCALE.
  EXPECT_EQ(1.0, settings->GetCurrentScale());
  first->setDIMSCALE(100.0);
  EXPECT_EQ(100.0, settings->GetCurrentScale());
  EXPECT_TRUE(settings->SetCurrentScale(50.0));
  EXPECT_EQ(50.0, first->getDIMSCALE());
  EXPECT_EQ(1.0, second->getDIMSCALE());

  const double refused[] = {0.0, -1.0, std::numeric_limits<double>::quiet_NaN(),
                            std::numeric_limits<double>::infinity()};
  for (double scale : refused) {
    SCOPED_TRACE(scale);
    EXPECT_FALSE(settings->SetCurrentScale(scale));
    EXPECT_EQ(50.0, first->getDIMSCALE());
  }

  CDrawingSettings detached(nullptr);
  EXPECT_EQ(1.0, detached.GetCurrentScale());
  EXPECT_FALSE(detached.SetCurrentScale(2.0));
}

} // namespace
