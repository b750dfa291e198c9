// Texts: UTF-8, blanks, letters, numbers.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace host {

// The bytes of the UTF-8 character at the start of `text`, which is not empty; 0 when there is
// none. Overlong forms and surrogates are none.
std::size_t Utf8Length(std::string_view text);
// Whether the byte stands inside of a character, behind its first byte.
constexpr bool IsUtf8Continuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// Without the characters in `blanks` at both ends, or at the end.
std::string_view Stripped(std::string_view text, std::string_view blanks = " \t");
std::string_view StrippedEnd(std::string_view text, std::string_view blanks = " ");

// The letters of ASCII in one case.
std::string LowerCase(std::string_view text);
std::string UpperCase(std::string_view text);

// Number of bytes to insert, drop or change to make one text of the other (Levenshtein).
std::size_t EditDistance(std::string_view a, std::string_view b);

// "1 field", "2 fields".
std::string Counted(std::size_t count, std::string_view noun);

// `value` with `digits` significant digits; 0 stands for as many as it takes to read it back. An
// infinite value is `infinity`, after its sign, and an undefined one "NaN". The text is in
// `buffer`.
inline constexpr std::size_t kNumberBuffer = 32;
std::string_view FormatNumber(double value, std::string_view infinity, int digits,
                              std::span<char, kNumberBuffer> buffer);

}  // namespace host
