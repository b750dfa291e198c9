#include "tavolite/tables/number.h"

#include <algorithm>

namespace host {

namespace {

bool IsWord(std::string_view text, std::string_view word) {
  return std::equal(text.begin(), text.end(), word.begin(), word.end(),
                    [](char a, char b) { return (a | 0x20) == b; });
}

bool IsNonzeroDigit(char c) {
  return c >= '1' && c <= '9';
}

// A number in form that the standard library does not give: is it beyond the range, or so small
// that zero is nearest to it? The first digit other than zero and the exponent tell.
ParsedNumber OutOfRange(std::string_view text) {
  const std::size_t mantissa_end = std::min(text.find_first_of("eE"), text.size());
  const std::string_view mantissa = text.substr(0, mantissa_end);
  long exponent = 0;
  detail::ReadExponent(text.data() + mantissa_end, text.data() + text.size(), exponent);
  const auto first = static_cast<long>(
      std::find_if(mantissa.begin(), mantissa.end(), IsNonzeroDigit) - mantissa.begin());
  const auto point = static_cast<long>(std::min(mantissa.find('.'), mantissa.size()));
  if (point - first + exponent > 0) {
    return {.kind = NumberKind::kTooLarge};
  }
  return {.kind = NumberKind::kNumber, .value = 0.0};
}

bool HasNumberForm(std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  std::uint64_t ignored = 0;
  const char* const start = p;
  p = detail::ReadDigits(p, end, ignored);
  std::ptrdiff_t digits = p - start;
  if (p != end && *p == '.') {
    const char* const fraction = p + 1;
    p = detail::ReadDigits(fraction, end, ignored);
    digits += p - fraction;
  }
  long exponent = 0;
  return digits > 0 && detail::ReadExponent(p, end, exponent) == end;
}

}  // namespace

ParsedNumber ParseNumber(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) {
    return {.kind = NumberKind::kMissing};
  }
  text = text.substr(first, text.find_last_not_of(" \t") + 1 - first);
  double value = 0.0;
  if (ScanNumber(text.data(), text.data() + text.size(), value) == text.data() + text.size()) {
    return {.kind = NumberKind::kNumber, .value = value};
  }
  if (text == "NA") {
    return {.kind = NumberKind::kMissing};
  }
  if (text.front() == '-' || text.front() == '+') {
    text.remove_prefix(1);
  }
  if (IsWord(text, "nan")) {
    return {.kind = NumberKind::kMissing};
  }
  if (IsWord(text, "inf") || IsWord(text, "infinity")) {
    return {.kind = NumberKind::kInfinite};
  }
  return HasNumberForm(text) ? OutOfRange(text) : ParsedNumber{};
}

}  // namespace host
