#include "base/text.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <ostream>
#include <sstream>

#include "base/excerpt.h"

namespace host {
namespace {

struct Start {
  std::string_view text;
  std::size_t length;
  friend void PrintTo(const Start& start, std::ostream* out) {
    *out << testing::PrintToString(start.text);
  }
};

class Utf8Test : public testing::TestWithParam<Start> {};

TEST_P(Utf8Test, KnowsTheCharacterAtTheStart) {
  EXPECT_EQ(Utf8Length(GetParam().text), GetParam().length);
}

INSTANTIATE_TEST_SUITE_P(Starts, Utf8Test,
                         testing::Values(Start{"ab", 1}, Start{std::string_view("\0", 1), 1},
                                         Start{"\xC3\xBC\xC3", 2}, Start{"\xE2\x82\xAC", 3},
                                         Start{"\xEF\xBF\xBE", 3}, Start{"\xF4\x8F\xBF\xBF", 4},
                                         Start{"\xC3", 0}, Start{"\xC3z", 0}, Start{"\x80", 0},
                                         Start{"\xFF", 0}, Start{"\xC0\x80", 0},
                                         Start{"\xE0\x9F\xBF", 0}, Start{"\xED\xA0\x80", 0},
                                         Start{"\xF0\x8F\xBF\xBF", 0},
                                         Start{"\xF4\x90\x80\x80", 0}));

TEST(Text, LosesBlanksAtItsEnds) {
  EXPECT_EQ(Stripped(" \ta b\t "), "a b");
  EXPECT_EQ(Stripped(" \t "), "");
  EXPECT_EQ(Stripped(""), "");
  EXPECT_EQ(StrippedEnd(" a  "), " a");
  EXPECT_EQ(StrippedEnd("a\t\r ", " \t\r"), "a");
}

TEST(Text, WhatSteersATerminalIsEscaped) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"a\\b Zürich 東京", "a\\b Zürich 東京"},
      {"\x1B[2J\a\n\x7F", "\\x1b[2J\\x07\\x0a\\x7f"},
      {"\xC2\x9B\x9B\xC2\xA0", "\\x9b\\x9b\xC2\xA0"},
      {"\u202Ea\u2066\u2028", "\\u202ea\\u2066\\u2028"},
      {"\xC3", "\\xc3"}};
  for (const auto& [text, printable] : cases) {
    EXPECT_EQ(Printable(text), printable);
    std::ostringstream out;
    WritePrintable(out, text);
    EXPECT_EQ(out.str(), printable);
  }
  EXPECT_EQ(Printable("a\nb\t\r", "\n\t"), "a\nb\t\\x0d");
  EXPECT_EQ(Excerpt(std::string(38, 'a') + "\x1B"), std::string(38, 'a') + "...");
}

TEST(Text, NumbersFitTheirBuffer) {
  std::array<char, kNumberBuffer> buffer;
  EXPECT_EQ(FormatNumber(-2.2250738585072014e-308, "Inf", 0, buffer), "-2.2250738585072014e-308");
  EXPECT_EQ(FormatNumber(2.0 / 3.0, "Inf", 7, buffer), "0.6666667");
  EXPECT_EQ(FormatNumber(-INFINITY, "Infinity", 7, buffer), "-Infinity");
  EXPECT_EQ(FormatNumber(-NAN, "Inf", 0, buffer), "NaN");
}

}  // namespace
}  // namespace host
