#include "tavolite/tables/number.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

namespace host {
namespace {

std::uint64_t Bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

// The C library rounds correctly.
void ExpectNearest(const std::string& text) {
  const double expected = std::strtod(text.c_str(), nullptr);
  const ParsedNumber parsed = ParseNumber(text);
  if (std::isinf(expected)) {
    EXPECT_EQ(parsed.kind, NumberKind::kTooLarge) << text;
    return;
  }
  ASSERT_EQ(parsed.kind, NumberKind::kNumber) << text;
  const bool both_zero = expected == 0.0 && parsed.value == 0.0;  // the sign of what underflows
  EXPECT_TRUE(both_zero || Bits(parsed.value) == Bits(expected)) << text;
}

TEST(NumberTest, RandomNumbersAreNearest) {
  std::mt19937_64 random(2026);
  char text[64];
  for (int i = 0; i < 200000; ++i) {
    const double value = std::bit_cast<double>(random());
    if (!std::isfinite(value)) {
      continue;
    }
    const int digits = 1 + static_cast<int>(random() % 20);
    const auto form =
        random() % 2 == 0 ? std::chars_format::scientific : std::chars_format::general;
    ExpectNearest({text, std::to_chars(text, text + sizeof text, value, form, digits).ptr});
  }
}

// Digits around the eight that are read at a time and the 19 that a word holds, the point anywhere.
TEST(NumberTest, DigitStringsOfAnyLengthAreNearest) {
  std::mt19937_64 random(7);
  for (int i = 0; i < 200000; ++i) {
    std::string text = random() % 2 == 0 ? "-" : "";
    const std::size_t length = 1 + random() % 40;
    const std::size_t point = random() % (length + 1);
    for (std::size_t k = 0; k < length; ++k) {
      text += k == point ? "." : "";
      text += static_cast<char>('0' + (random() % 3 == 0 ? 0 : random() % 10));
    }
    if (random() % 3 == 0) {
      text += "e" + std::to_string(static_cast<int>(random() % 80) - 40);
    }
    ExpectNearest(text);
  }
}

TEST(NumberTest, HardCases) {
  for (const char* text : {
           "9007199254740992",
           "9007199254740993",
           "9007199254740994.999",
           "9007199254740993e22",
           "9007199254740992e-22",
           "1e22",
           "1e23",
           "8.5e22",
           "0.1",
           "123456789012345678901234567890",
           "2.2250738585072011e-308",
           "2.2250738585072014e-308",
           "4.9406564584124654e-324",
           "2e-324",
           "1e-400",
           "-1e-400",
           "1.7976931348623157e308",
           "1.7976931348623158e308",
           "1.7976931348623159e308",
           "1e309",
           "1e999",
           "0e999",
           "0.000e99999999999999999999",
           "1e-99999999999999999999",
           "6929495644600919.5",
           "9007199254740991.4999999999999999999999",
           "0.500000000000000166533453693773481063544750213623046875",
       }) {
    ExpectNearest(text);
  }
  // Just below half a unit above the largest double. Not every C library reads as many digits.
  const ParsedNumber largest = ParseNumber(
      "179769313486231580793728971405303415079934132710037826936173778980444968292764750946649"
      "017977"
      "587207096330286416692887910946555547851940402630657488671505820681908902000708383676273"
      "854845"
      "817711531764475730270069855571366959622842914819860834936475292719074168444365510704342"
      "711559"
      "699508093042880177904174497791."
      "9999999999999999999999999999999999999999999999999999999999");
  EXPECT_EQ(largest.kind, NumberKind::kNumber);
  EXPECT_EQ(largest.value, std::numeric_limits<double>::max());
  EXPECT_EQ(Bits(ParseNumber("-0").value), Bits(-0.0));
}

TEST(NumberTest, KindsOfFields) {
  const struct {
    const char* text;
    NumberKind kind;
  } cases[] = {
      {" +1.5\t", NumberKind::kNumber},
      {".5", NumberKind::kNumber},
      {"5.", NumberKind::kNumber},
      {"1E+3", NumberKind::kNumber},
      {"", NumberKind::kMissing},
      {"  ", NumberKind::kMissing},
      {"NA", NumberKind::kMissing},
      {" NA ", NumberKind::kMissing},
      {"nan", NumberKind::kMissing},
      {"-NaN", NumberKind::kMissing},
      {"inf", NumberKind::kInfinite},
      {"-Infinity", NumberKind::kInfinite},
      {"1e999", NumberKind::kTooLarge},
      {"-1e999", NumberKind::kTooLarge},
      {"0.00001e314", NumberKind::kTooLarge},
      {"na", NumberKind::kText},
      {".", NumberKind::kText},
      {"+", NumberKind::kText},
      {"- 1", NumberKind::kText},
      {"--1", NumberKind::kText},
      {"1e", NumberKind::kText},
      {"1e+", NumberKind::kText},
      {"1.2.3", NumberKind::kText},
      {"1,5", NumberKind::kText},
      {"0x1p3", NumberKind::kText},
      {"1d5", NumberKind::kText},
      {"1 2", NumberKind::kText},
      {"infinite", NumberKind::kText},
      {"e5", NumberKind::kText},
      {"1\xC2\xA0", NumberKind::kText},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ParseNumber(c.text).kind, c.kind) << '"' << c.text << '"';
  }
}

}  // namespace
}  // namespace host
