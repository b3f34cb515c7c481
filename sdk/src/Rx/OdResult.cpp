#include "OdResult.h"

const char* odResultText(OdResult res) {
  switch (res) {
#define OD_RESULT_TEXT(name, value, text)                                                          \
  case name:                                                                                       \
    return text;
    ODRESULT_TABLE(OD_RESULT_TEXT)
#undef OD_RESULT_TEXT
  }
  return "Unknown error";
}

const char* odResultName(OdResult res) {
  switch (res) {
#define OD_RESULT_NAME(name, value, text)                                                          \
  case name:                                                                                       \
    return #name;
    ODRESULT_TABLE(OD_RESULT_NAME)
#undef OD_RESULT_NAME
  }
  return "";
}
