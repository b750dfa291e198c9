// The signature of every function against the interface page, and the conversions of arguments.
#include "binding/abi.h"

#include <gtest/gtest.h>

#include <string>

#include "binding/dctmf9glu.h"
#include "binding/optf9glu.h"
#include "binding/palmf9glu.h"
#include "binding/tdxf9glu.h"
#include "binding/tevmf9glu.h"
#include "binding/tmomf9glu.h"

namespace linfit {
namespace {

template <class... Codes>
constexpr bool Is(std::span<const int> codes, Codes... expected) {
  const std::array<int, sizeof...(Codes)> list{expected...};
  return std::equal(codes.begin(), codes.end(), list.begin(), list.end());
}

#define CODES(Library, function, ...) \
  static_assert(Is(decltype(Library::function)::abi::codes, __VA_ARGS__))

CODES(Pal, palSetAuditLine, 0, 11);
CODES(Pal, palGetAuditLine, 12);
CODES(Tev, tevInitEnvironmentLegacy, 3, 11);
CODES(Tev, tevLog, 0, 11);
CODES(Tev, tevLogStat, 0, 11);
CODES(Tev, tevStat, 0, 11);
CODES(Tev, tevStatC, 0, 11);
CODES(Tev, tevStatAudit, 0, 11);
CODES(Tev, tevStatCon, 0);
CODES(Tev, tevStatCoff, 0);
CODES(Tev, tevStatPChar, 0, 9);
CODES(Tev, tevGetStrOpt, 12, 11);
CODES(Tev, tevTimeDiff, 13);
CODES(Tmo, tmoRegisterEnvironment, 3, 1, 12);
CODES(Tmo, tmoLoadDataLegacy, 3, 12);
CODES(Tmo, tmoOptFile, 3);
CODES(Tmo, tmoNameOptFile, 12);
CODES(Tmo, tmoDict, 1);
CODES(Tmo, tmoDictionary, 3);
CODES(Tmo, tmoIndexBaseSet, 0, 3);
CODES(Tmo, tmoObjStyleSet, 0, 3);
CODES(Tmo, tmoPinfSet, 0, 13);
CODES(Tmo, tmoMinfSet, 0, 13);
CODES(Tmo, tmoM, 3);
CODES(Tmo, tmoN, 3);
CODES(Tmo, tmoObjVar, 3);
CODES(Tmo, tmoObjRow, 3);
CODES(Tmo, tmoGetColStat, 3, 3, 4, 4, 4, 4);
CODES(Tmo, tmoGetColJacInfoOne, 0, 3, 2, 14, 4, 4);
CODES(Tmo, tmoGetRhsOne, 13, 3);
CODES(Tmo, tmoGetEquTypeOne, 3, 3);
CODES(Tmo, tmoGetVarLowerOne, 13, 3);
CODES(Tmo, tmoGetVarUpperOne, 13, 3);
CODES(Tmo, tmoSetHeadnTail, 0, 3, 13);
CODES(Tmo, tmoSetSolutionVarRec, 3, 3, 13, 13, 3, 3);
CODES(Tmo, tmoSetSolutionEquRec, 3, 3, 13, 13, 3, 3);
CODES(Tmo, tmoModelStatSet, 0, 3);
CODES(Tmo, tmoSolveStatSet, 0, 3);
CODES(Tmo, tmoUnloadSolutionLegacy, 3);
CODES(Dct, dctSymName, 3, 3, 17);
CODES(Dct, dctUelLabel, 3, 3, 19, 17);
CODES(Dct, dctColUels, 3, 3, 4, 52, 4);
CODES(Dct, dctRowUels, 3, 3, 4, 52, 4);
CODES(Opt, optReadDefinition, 3, 11);
CODES(Opt, optEchoSet, 0, 3);
CODES(Opt, optReadParameterFile, 3, 11);
CODES(Opt, optMessageCount, 3);
CODES(Opt, optGetMessage, 0, 3, 12, 4);
CODES(Opt, optGetIntStr, 3, 11);
CODES(Opt, optGetStrStr, 12, 11);
CODES(Tdx, tdxGetDLLVersion, 3, 12);
CODES(Tdx, tdxOpenWrite, 3, 11, 11, 4);
CODES(Tdx, tdxDataWriteStrStart, 3, 11, 11, 3, 3, 3);
CODES(Tdx, tdxDataWriteStr, 3, 55, 53);
CODES(Tdx, tdxDataWriteDone, 3);
CODES(Tdx, tdxClose, 3);
CODES(Tdx, tdxGetLastError, 3);
CODES(Tdx, tdxErrorStr, 3, 3, 12);
CODES(Tdx, tdxErrorCount, 3);
CODES(Tdx, tdxCurrentDim, 3);

// What the last call received, seen from the library's side.
std::string received;

int TakeShort(Handle, const char* text) {
  received = FromShortString(text);
  return static_cast<unsigned char>(text[0]);
}

int TakeLong(Handle, const char* text) {
  received = text;
  return static_cast<int>(received.size());
}

TEST(TextIn, IsTrimmedAndCut) {
  using Short = Abi<int(std::string_view)>;
  const std::string exact(255, 'a');
  for (const auto& [given, expected] :
       std::vector<std::pair<std::string, std::string>>{{"", ""},
                                                        {std::string(300, ' '), ""},
                                                        {" two words  ", " two words"},
                                                        {"seven67 ", "seven67"},
                                                        {exact + "b", exact},
                                                        {exact + std::string(45, ' '), exact}}) {
    EXPECT_EQ(Short::Call(TakeShort, nullptr, given), static_cast<int>(expected.size()));
    EXPECT_EQ(received, expected);
  }
  using Long = Abi<int(LongText)>;
  EXPECT_EQ(Long::Call(TakeLong, nullptr, std::string(600, 'a')), 511);
  EXPECT_EQ(Long::Call(TakeLong, nullptr, "x" + std::string(600, ' ')), 1);
}

int GiveTwenty(Handle, char* text) {
  ToShortString("12345678901234567890", text);
  return 7;
}
void GiveThree(Handle, int, char* text) {
  ToShortString("abc", text);
}
int GiveNothing(Handle, char*) {
  return 0;
}

TEST(TextOut, IsCutOrPadded) {
  std::array<char, 10> field{};
  EXPECT_EQ(Abi<int(ShortOut)>::Call(GiveTwenty, nullptr, field), 7);
  EXPECT_EQ(std::string(field.data(), field.size()), "1234567890");
  EXPECT_EQ(Abi<int(TextOut)>::Call(GiveTwenty, nullptr, std::span(field).first(4)), 7);
  EXPECT_EQ(std::string(field.data(), field.size()), "1234567890");
  Abi<int(ShortOut)>::Call(GiveNothing, nullptr, field);
  EXPECT_EQ(Trimmed(field), "");

  const ShortResult result = Abi<ShortResult(int)>::Call(GiveThree, nullptr, 1);
  EXPECT_EQ(std::string(result.data(), result.size()), "abc" + std::string(252, ' '));
}

bool buffer_is_empty = false;
int TakeKeys(Handle, const char* keys, const double* values) {
  received.clear();
  buffer_is_empty = keys[0] == '\0';
  for (int k = 0; k < static_cast<int>(values[4]); ++k) {
    received.append(FromShortString(keys + 256 * k)).append("|");
  }
  return 1;
}

TEST(IndexTuple, HoldsAsManyLabelsAsThereAreDimensions) {
  using Write = Abi<int(IndexTuple, const ValueRecord&)>;
  KeyTuple keys;
  for (std::size_t k = 0; k < keys.size(); ++k) PadCopy("key " + std::to_string(k), keys[k]);
  keys[1].fill('x');
  const std::string cut(255, 'x');

  ValueRecord values{1.5, 0, 0, 0, 3};
  Write::Call(TakeKeys, nullptr, IndexTuple{keys, 3, true}, values);
  EXPECT_EQ(received, "key 0|" + cut + "|key 2|");
  Write::Call(TakeKeys, nullptr, IndexTuple{keys, 1, false}, values = {1.5, 0, 0, 0, 1});
  EXPECT_EQ(received, "key 0" + std::string(250, ' ') + "|");
  for (const int scalar : {0, -1}) {
    Write::Call(TakeKeys, nullptr, IndexTuple{keys, scalar, true}, values = {});
    EXPECT_TRUE(buffer_is_empty);
  }
  Write::Call(TakeKeys, nullptr, IndexTuple{keys, 21, true}, values = {0, 0, 0, 0, 20});
  EXPECT_EQ(received.substr(received.size() - 7), "key 19|");
}

}  // namespace
}  // namespace linfit
