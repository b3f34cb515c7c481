#ifndef CUSTENTS_TESTS_DIMENSION_TEST_SUPPORT_H
#define CUSTENTS_TESTS_DIMENSION_TEST_SUPPORT_H

// Helpers shared by the tests of the coordinate dimensions: the host's precision setting and
// true colours.

#include "BrevantApp.h"
#include "CmColor.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <unistd.h>

namespace dimtest {

/// Points the host's profile at a file of its own holding `precision` (or no setting at all)
/// for the life of the object.
class ScopedPrecision {
public:
  explicit ScopedPrecision(const int* precision)
      : m_previous(TheApp()->profilePath()),
        m_path("/tmp/custents-dimtest-" + std::to_string(getpid()) + ".ini") {
    std::remove(m_path.c_str());
    TheApp()->setProfilePath(OdString(m_path.c_str()));
    if (precision) {
      EXPECT_TRUE(TheApp()->WriteProfileInt(u"options", u"dimAccurity", *precision));
    }
  }
  explicit ScopedPrecision(int precision) : ScopedPrecision(&precision) {}
  ~ScopedPrecision() {
    TheApp()->setProfilePath(m_previous);
    std::remove(m_path.c_str());
  }
  ScopedPrecision(const ScopedPrecision&) = delete;
  ScopedPrecision& operator=(const ScopedPrecision&) = delete;

private:
  OdString m_previous;
  std::string m_path;
};

inline OdCmColor trueColor(OdUInt8 r, OdUInt8 g, OdUInt8 b) {
  OdCmColor color;
  color.setRGB(r, g, b);
  return color;
}

} // namespace dimtest

#endif
