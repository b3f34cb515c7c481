// Helpers the platform's tests share: near-equal points, the two in-memory filers, what a call
// throws, whole files, and the output of a helper program.
#pragma once

#include "DbDwgStreamFiler.h"
#include "DbDxfItemFiler.h"
#include "Ge/GePoint3d.h"
#include "Ge/GeVector3d.h"
#include "OdError.h"
#include "RxObjectImpl.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

typedef OdStaticRxObject<OdDbDwgStreamFiler> DwgFiler;
typedef OdStaticRxObject<OdDbDxfItemFiler> DxfFiler;

inline void expectPoint(const OdGePoint3d& expected, const OdGePoint3d& actual, double tol = 1e-9) {
  EXPECT_NEAR(expected.x, actual.x, tol);
  EXPECT_NEAR(expected.y, actual.y, tol);
  EXPECT_NEAR(expected.z, actual.z, tol);
}

inline void expectVector(const OdGeVector3d& expected, const OdGeVector3d& actual,
                         double tol = 1e-9) {
  expectPoint(OdGePoint3d::kOrigin + expected, OdGePoint3d::kOrigin + actual, tol);
}

/// The error a call raised (eOk and an empty message when it raised none).
struct Outcome {
  OdResult code = eOk;
  OdString message;
};

inline Outcome outcomeOf(const std::function<void()>& call) {
  Outcome outcome;
  try {
    call();
  } catch (const OdError& err) {
    outcome.code = err.code();
    outcome.message = err.description();
  }
  return outcome;
}

inline OdResult resultOf(const std::function<void()>& call) {
  return outcomeOf(call).code;
}

inline std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

inline void writeAll(const std::string& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

/// Runs a shell command; its exit status (-1 when it could not start) and standard output.
inline int runCommand(const std::string& command, std::string& output) {
  std::FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr)
    return -1;
  char buffer[4096];
  std::size_t got = 0;
  while ((got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0)
    output.append(buffer, got);
  return ::pclose(pipe);
}

inline bool haveEzdxf() {
  std::string ignored;
  return runCommand("/usr/bin/python3 -c 'import ezdxf' 2>/dev/null", ignored) == 0;
}
