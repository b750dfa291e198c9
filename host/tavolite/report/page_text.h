// Numbers and texts as a report page holds them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace host {

// Text for HTML, between tags or within a quoted attribute. Bytes that aren't UTF-8 and control
// characters, which HTML doesn't have, become U+FFFD.
std::string HtmlText(std::string_view text);

// `digits` significant digits; "undefined" for NaN, "Inf" and "-Inf".
std::string NumberOf(double value, int digits = 7);
// Digits behind the point, for columns that are to be read downwards.
std::string FixedNumber(double value, int decimals);
// A count with a comma between its thousands.
std::string CountText(std::size_t count);
// A probability as a table shows it: three digits, and what is too small for single precision as
// such.
std::string ProbabilityText(double p);

// JSON that a <script> element can hold: no "<" stands in it. Numbers that aren't finite are null;
// bytes of a text that aren't UTF-8 become U+FFFD.
std::string JsonText(std::string_view text);
std::string JsonNumbers(std::span<const double> values, int digits = 6);
std::string JsonCounts(std::span<const std::int64_t> values);

}  // namespace host
