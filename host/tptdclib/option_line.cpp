#include "tptdclib/option_line.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "base/text.h"
#include "base/text_file.h"

namespace host {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kQuotes = "'\"";

}  // namespace

void OptionLine::SkipBlanks() {
  rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
}

std::string OptionLine::Key() {
  const std::size_t end = std::min(rest_.find_first_of(" \t="), rest_.size());
  std::string key = UpperCase(rest_.substr(0, end));
  rest_.remove_prefix(end);
  SkipBlanks();
  return key;
}

bool OptionLine::Equals() {
  if (!rest_.starts_with('=')) {
    return false;
  }
  rest_.remove_prefix(1);
  SkipBlanks();
  return true;
}

OptionText OptionLine::Value() {
  if (rest_.empty()) {
    throw FileError("no value");
  }
  OptionText value;
  value.quoted = kQuotes.find(rest_.front()) != std::string_view::npos;
  if (value.quoted) {
    value.text = Quoted();
  } else {
    const std::size_t end = std::min(rest_.find_first_of(kBlanks), rest_.size());
    value.text = rest_.substr(0, end);
    rest_.remove_prefix(end);
  }
  SkipBlanks();
  return value;
}

std::string OptionLine::Quoted() {
  const char quote = rest_.front();
  std::string text;
  for (std::size_t i = 1; i < rest_.size(); ++i) {
    const bool at_quote = rest_[i] == quote;
    const bool doubled = at_quote && i + 1 < rest_.size() && rest_[i + 1] == quote;
    if (at_quote && !doubled) {
      rest_.remove_prefix(i + 1);
      if (!rest_.empty() && kBlanks.find(rest_.front()) == std::string_view::npos) {
        throw FileError("no blank after the closing quote");
      }
      return text;
    }
    text += rest_[i];
    i += doubled ? 1 : 0;
  }
  throw FileError("the closing quote is missing");
}

std::string_view OptionLine::Rest() const {
  return Stripped(rest_);
}

std::int32_t OptionInteger(const OptionText& value) {
  std::string_view digits = value.text;
  // from_chars takes a minus sign only.
  if (digits.starts_with('+') && !digits.starts_with("+-")) {
    digits.remove_prefix(1);
  }
  std::int32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (value.quoted || stop != end || error == std::errc::invalid_argument) {
    throw FileError("\"" + value.text + "\" is not an integer");
  }
  if (error == std::errc::result_out_of_range) {
    throw FileError(value.text + " does not fit in 32 bits");
  }
  return number;
}

}  // namespace host
