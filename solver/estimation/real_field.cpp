#include "estimation/real_field.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace linfit {
namespace {

// The longest text is the largest double in fixed form: 309 digits, point, sign and decimals.
using NumberBuffer = std::array<char, 400>;

std::string Text(double value, std::chars_format format, int digits) {
  NumberBuffer buffer;
  char* const first = buffer.data();
  const auto end = std::to_chars(first, first + buffer.size(), value, format, digits);
  std::string text(first, end.ptr);
  if (const auto e = text.find('e'); e != std::string::npos) text[e] = 'E';
  return text;
}

// 10 to the minus `exponent`, the nearest double: the powers up to 1e22 are exact, and one division
// rounds once. std::pow need not.
double NegativePowerOfTen(int exponent) {
  double power = 1.0;
  for (int i = 0; i < exponent; ++i) power *= 10.0;
  return 1.0 / power;
}

std::string NumberText(double value, int width, int digits) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0.0 ? "Infinity" : "-Infinity";
  if (value == 0.0) value = 0.0;  // minus zero
  if (value == 0.0 || std::abs(value) >= NegativePowerOfTen(digits - 2)) {
    std::string fixed = Text(value, std::chars_format::fixed, digits);
    if (fixed.size() <= static_cast<std::size_t>(width)) return fixed;
  }
  return Text(value, std::chars_format::scientific, digits);
}

}  // namespace

std::string RealField(double value, int width, int digits) {
  std::string text = NumberText(value, width, digits);
  const auto columns = static_cast<std::size_t>(width);
  if (text.size() < columns) text.insert(0, columns - text.size(), ' ');
  return text;
}

std::string FreeReal(double value) {
  NumberBuffer buffer;
  char* const first = buffer.data();
  const auto end = std::to_chars(first, first + buffer.size(), value);
  std::string text(" ");
  text.append(first, end.ptr);
  if (const auto e = text.find('e'); e != std::string::npos) text[e] = 'E';
  return text;
}

}  // namespace linfit
