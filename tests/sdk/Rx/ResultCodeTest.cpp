#include "OdResult.h"

#include <gtest/gtest.h>

namespace {

struct CodeCase {
  OdResult code;
  int number;
  const char* name;
};

// Numbers that drawings, callers and modules compare against.
const CodeCase kContractCodes[] = {
    {eOk, 0, "eOk"},
    {eNotImplementedYet, 1, "eNotImplementedYet"},
    {eNotApplicable, 2, "eNotApplicable"},
    {eInvalidInput, 3, "eInvalidInput"},
    {eKeyNotFound, 22, "eKeyNotFound"},
    {eDuplicateKey, 23, "eDuplicateKey"},
    {eInvalidIndex, 24, "eInvalidIndex"},
    {eNotOpenForRead, 64, "eNotOpenForRead"},
    {eNotOpenForWrite, 65, "eNotOpenForWrite"},
    {eNotThatKindOfClass, 105, "eNotThatKindOfClass"},
    {eNotInitializedYet, 255, "eNotInitializedYet"},
    {eExtendedError, 313, "eExtendedError"},
};

TEST(ResultCodeTest, ContractNumbersAndNames) {
  for (const CodeCase& c : kContractCodes) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.number, static_cast<int>(c.code));
    EXPECT_STREQ(c.name, odResultName(c.code));
    EXPECT_STRNE("Unknown error", odResultText(c.code));
  }
}

} // namespace
