#include "BrevantApp.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
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

TEST_F(ProfileTest, MissingFileSectionOrKeyGivesTheDefault) {
  EXPECT_EQ(-99, accuracy());
  writeFile("[display]\ndimAccurity=3\n");
  EXPECT_EQ(-99, accuracy()) << "the key lives in another section";
  writeFile("[options]\nprecision=3\n");
  EXPECT_EQ(-99, accuracy());
  writeFile("");
  EXPECT_EQ(5, accuracy(5));
}

TEST_F(ProfileTest, ValueMustBeAWholeInteger) {
  const char* const read[] = {"3", " 4 ", "-2", "+7", "0", "007", "2147483647", "-2147483648"};
  const int values[] = {3, 4, -2, 7, 0, 7, 2147483647, -2147483647 - 1};
  const char* const refused[] = {
      "3x",  "x3",   "1.5", "", "-", "+", "2147483648", "-2147483649", "99999999999999999999",
      "3 4", "0x10", "３"};
  for (std::size_t i = 0; i < 8 + 12; ++i) {
    const std::string value = i < 8 ? read[i] : refused[i - 8];
    SCOPED_TRACE("value \"" + value + "\"");
    writeFile("[options]\ndimAccurity=" + value + "\n");
    EXPECT_EQ(i < 8 ? values[i] : -99, accuracy());
  }
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
  const fs::path nested = folder / "a" / "b" / "profile.ini";
  TheApp()->setProfilePath(OdString(nested.string().c_str()));
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("options"), OD_T("dimAccurity"), 3));
  EXPECT_EQ(3, accuracy());
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("Options"), OD_T("DIMACCURITY"), -12));
  EXPECT_EQ(-12, accuracy());
  std::ifstream in(nested, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  EXPECT_EQ("[options]\ndimAccurity=-12\n", bytes.str());
}

TEST_F(ProfileTest, WriteKeepsEveryOtherLine) {
  writeFile("; comment\n"
            "[display]\n"
            "zoom=2\n"
            "\n"
            "[OPTIONS]\n"
            "other=1\n"
            "DimAccurity = 1\n"
            "last=8\n"
            "\n"
            "[tail]\n"
            "x=1\n");
  ASSERT_TRUE(TheApp()->WriteProfileInt(OD_T("options"), OD_T("dimAccurity"), 4));
  EXPECT_EQ("; comment\n"
            "[display]\n"
            "zoom=2\n"
            "\n"
            "[OPTIONS]\n"
            "other=1\n"
            "DimAccurity=4\n"
            "last=8\n"
            "\n"
            "[tail]\n"
            "x=1\n",
            readFile());

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
  EXPECT_FALSE(TheApp()->WriteProfileInt(OD_T(""), OD_T("dimAccurity"), 2));
  EXPECT_FALSE(TheApp()->WriteProfileInt(OD_T("options"), OD_T(""), 2));
  EXPECT_FALSE(TheApp()->WriteProfileInt(OD_T("options"), OD_T("a=b"), 2));
  EXPECT_FALSE(TheApp()->WriteProfileInt(OD_T("options"), OD_T("a\nb"), 2));
  EXPECT_FALSE(TheApp()->WriteProfileInt(OD_T("opt]ions"), OD_T("a"), 2));
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

} // namespace
