// The conversions of arguments on their way to the library and back.
#include "binding/abi.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace linfit {
namespace {

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
  ShortText text;
  EXPECT_EQ(Abi<int(ShortText&)>::Call(GiveTwenty, nullptr, text), 7);
  EXPECT_EQ(text.View(), "12345678901234567890");
  Abi<int(ShortText&)>::Call(GiveNothing, nullptr, text);
  EXPECT_EQ(text.View(), "");
  Abi<int(ShortOut)>::Call(GiveNothing, nullptr, field);
  EXPECT_EQ(Trimmed(field), "");

  const ShortResult result = Abi<ShortResult(int)>::Call(GiveThree, nullptr, 1);
  EXPECT_EQ(std::string(result.data(), result.size()), "abc" + std::string(252, ' '));
}

bool buffer_is_empty = false;
int TakeKeys(Handle, const char* keys, const double* values) {
  received.clear();
  buffer_is_empty = keys[0] == '\0';
  for (int k = 0; k < static_cast<int>(values[4]); ++k, keys += 256) {
    received.append(FromShortString(keys)).append("|");
  }
  return 1;
}

TEST(IndexTuple, HoldsAsManyLabelsAsThereAreDimensions) {
  using Write = Abi<int(IndexTuple, const ValueRecord&)>;
  std::vector<std::string> texts;
  for (int k = 0; k < 20; ++k) texts.push_back("key " + std::to_string(k) + "  ");
  texts[1] = std::string(256, 'x');
  const std::vector<std::string_view> keys(texts.begin(), texts.end());
  const std::string cut(255, 'x');

  ValueRecord values{1.5, 0, 0, 0, 3};
  Write::Call(TakeKeys, nullptr, IndexTuple{keys, 3, true}, values);
  EXPECT_EQ(received, "key 0|" + cut + "|key 2|");
  Write::Call(TakeKeys, nullptr, IndexTuple{keys, 1, false}, values = {1.5, 0, 0, 0, 1});
  EXPECT_EQ(received, "key 0  |");
  for (const int scalar : {0, -1, std::numeric_limits<int>::min()}) {
    Write::Call(TakeKeys, nullptr, IndexTuple{keys, scalar, true}, values = {});
    EXPECT_TRUE(buffer_is_empty);
  }
  for (const int too_many : {21, std::numeric_limits<int>::max()}) {
    Write::Call(TakeKeys, nullptr, IndexTuple{keys, too_many, true}, values = {0, 0, 0, 0, 20});
    EXPECT_EQ(received.substr(received.size() - 7), "key 19|");
  }
  const std::span<const std::string_view> one = std::span(keys).first(1);
  Write::Call(TakeKeys, nullptr, IndexTuple{one, 3, true}, values = {0, 0, 0, 0, 3});
  EXPECT_EQ(received, "key 0|||") << "a label that isn't there is blank";
}

}  // namespace
}  // namespace linfit
