#include "text/real_text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace linfit {
namespace {

// `format`: none for the shortest text, else std::chars_format and the digits behind the point.
template <class... Format>
std::string RealText(double value, Format... format) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0.0 ? "Infinity" : "-Infinity";
  // The longest text is the largest double in fixed form: 309 digits, point, sign and decimals.
  std::array<char, 400> buffer;
  const double unsigned_zero = value == 0.0 ? 0.0 : value;
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), unsigned_zero, format...);
  std::string text(buffer.data(), end.ptr);
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

bool ShowsThreeDigits(double value, int digits) {
  return value == 0.0 || std::abs(value) >= NegativePowerOfTen(digits - 2);
}

}  // namespace

std::string ExponentForm(double value, int digits) {
  return RealText(value, std::chars_format::scientific, digits);
}

std::string RealField(double value, int width, int digits) {
  const auto columns = static_cast<std::size_t>(width);
  std::string text;
  if (ShowsThreeDigits(value, digits)) text = RealText(value, std::chars_format::fixed, digits);
  if (text.empty() || text.size() > columns) text = ExponentForm(value, digits);
  if (text.size() < columns) text.insert(0, columns - text.size(), ' ');
  return text;
}

std::string FreeReal(double value) {
  return " " + RealText(value);
}

}  // namespace linfit
