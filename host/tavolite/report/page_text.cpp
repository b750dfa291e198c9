#include "tavolite/report/page_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/text.h"
#include "tavolite/report/fit_data.h"

namespace host {

namespace {

// A JSON string, whose valid UTF-8 is left as it is.
std::string JsonString(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

std::string_view HtmlCharacter(const char& c) {
  switch (c) {
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '&':
      return "&amp;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default: {
      const bool control = static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t';
      return control || c == 0x7F ? kReplacement : std::string_view(&c, 1);
    }
  }
}

template <class Value, class Text>
std::string JsonArray(std::span<const Value> values, Text text_of) {
  std::string text = "[";
  for (const Value& value : values) {
    if (text.size() > 1) text += ',';
    text += text_of(value);
  }
  return text + "]";
}

}  // namespace

std::string HtmlText(std::string_view text) {
  std::string html;
  while (!text.empty()) {
    const std::size_t length = Utf8Length(text);
    html += length == 1   ? HtmlCharacter(text[0])
            : length == 0 ? kReplacement
                          : text.substr(0, length);
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return html;
}

std::string NumberOf(double value, int digits) {
  if (std::isnan(value)) return "undefined";
  std::array<char, kNumberBuffer> buffer;
  return std::string(FormatNumber(value, "Inf", digits, buffer));
}

std::string FixedNumber(double value, int decimals) {
  if (!(std::abs(value) < 1e9)) return NumberOf(value, decimals + 4);
  std::array<char, kNumberBuffer> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::fixed, decimals)
                       .ptr;
  return {buffer.data(), end};
}

std::string CountText(std::size_t count) {
  std::string text = std::to_string(count);
  for (std::size_t k = 3; k < text.size(); k += 4) text.insert(text.size() - k, ",");
  return text;
}

std::string ProbabilityText(double p) {
  if (p >= 0.0 && p < kSmallestProbability) return "&lt; 1e-38";
  return p < 1e-3 ? NumberOf(p, 3) : FixedNumber(p, 4);
}

std::string JsonText(std::string_view text) {
  std::string json;
  for (const char c : JsonString(text)) {
    if (c == '<') {
      json += "\\u003c";
    } else {
      json += c;
    }
  }
  return json;
}

std::string JsonNumbers(std::span<const double> values, int digits) {
  return JsonArray(values, [digits](double value) {
    return std::isfinite(value) ? NumberOf(value, digits) : std::string("null");
  });
}

std::string JsonCounts(std::span<const std::int64_t> values) {
  return JsonArray(values, [](std::int64_t value) { return std::to_string(value); });
}

}  // namespace host
