#include "OdError.h"
#include "OdResult.h"
#include "RxObject.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

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

// Every code of the table, for the uniqueness checks.
const OdResult kAllCodes[] = {
#define OD_RESULT_LIST(name, value, text) name,
    ODRESULT_TABLE(OD_RESULT_LIST)
#undef OD_RESULT_LIST
};

TEST(ResultCodeTest, ContractNumbersAndNames) {
  for (const CodeCase& c : kContractCodes) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(c.number, static_cast<int>(c.code));
    EXPECT_STREQ(c.name, odResultName(c.code));
    EXPECT_STRNE("Unknown error", odResultText(c.code));
  }
}

TEST(ResultCodeTest, NamesNumbersAndTextsAreUnique) {
  std::set<int> numbers;
  std::set<std::string> names, texts;
  for (OdResult code : kAllCodes) {
    SCOPED_TRACE(odResultName(code));
    EXPECT_TRUE(numbers.insert(static_cast<int>(code)).second);
    EXPECT_TRUE(names.insert(odResultName(code)).second);
    const std::string text = odResultText(code);
    EXPECT_FALSE(text.empty());
    EXPECT_TRUE(texts.insert(text).second) << text;
  }
  EXPECT_EQ(0u, texts.count("Unknown error"));
}

TEST(ResultCodeTest, UnknownNumbersHaveNoNameAndAGenericText) {
  for (int number : {-1, 4, 25, 254, 256, 312, 314, 100000}) {
    SCOPED_TRACE(number);
    const OdResult code = static_cast<OdResult>(number);
    EXPECT_STREQ("Unknown error", odResultText(code));
    EXPECT_STREQ("", odResultName(code));
  }
}

TEST(ResultCodeTest, ErrorCarriesCodeAndMessage) {
  const OdError plain(eWasErased);
  EXPECT_EQ(eWasErased, plain.code());
  EXPECT_EQ(std::string(odResultText(eWasErased)), plain.description().toUtf8());
  EXPECT_STREQ(odResultText(eWasErased), plain.what());

  const OdError described(eKeyNotFound, OD_T("层 not found"));
  EXPECT_EQ(eKeyNotFound, described.code());
  EXPECT_EQ(std::string("层 not found"), described.what());

  const OdError textOnly(OdString(OD_T("free text")));
  EXPECT_EQ(eExtendedError, textOnly.code());

  const OdError_InvalidIndex index;
  EXPECT_EQ(eInvalidIndex, index.code());
}

TEST(ResultCodeTest, NotThatKindOfClassNamesBothClasses) {
  const OdError_NotThatKindOfClass err(OdRxClass::desc(), OdRxObject::desc());
  EXPECT_EQ(eNotThatKindOfClass, err.code());
  EXPECT_EQ(OdRxClass::desc(), err.objectClass());
  EXPECT_EQ(OdRxObject::desc(), err.wantedClass());
  const std::string message = err.what();
  EXPECT_NE(std::string::npos, message.find("OdRxClass")) << message;
  EXPECT_NE(std::string::npos, message.find("OdRxObject")) << message;

  const OdError_NotThatKindOfClass unknown(nullptr, nullptr);
  EXPECT_EQ(eNotThatKindOfClass, unknown.code());
  EXPECT_FALSE(std::string(unknown.what()).empty());
}

} // namespace
