// The pieces of one line of a definition file or an option file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace host {

// A value: bare, up to the next blank, or in quotes.
struct OptionText {
  std::string text;
  bool quoted = false;
};

class OptionLine {
 public:
  explicit OptionLine(std::string_view line) : rest_(line) { SkipBlanks(); }

  // Nothing on it, or a comment.
  [[nodiscard]] bool IsEmpty() const {
    return rest_.empty() || rest_.front() == '*' || rest_.front() == '#';
  }
  // Up to the next blank or "="; upper case, as keys are known.
  std::string Key();
  // Takes a "=" if that is what comes next.
  bool Equals();
  // Throws FileError: there is none, the closing quote is missing, or something follows it
  // directly.
  OptionText Value();
  // All that is left, without blanks at its end.
  [[nodiscard]] std::string_view Rest() const;

 private:
  void SkipBlanks();
  std::string Quoted();

  std::string_view rest_;
};

// A decimal integer of 32 bits with an optional sign. Throws FileError.
std::int32_t OptionInteger(const OptionText& value);

}  // namespace host
