// Texts from outside as parts of messages.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

// The length of the UTF-8 sequence at the start of `text`, 0 when it is none. Overlong forms and
// surrogates are none.
std::size_t Utf8Length(std::string_view text);

bool IsControl(char c);

// A piece of a text for a message: at most some 40 bytes, nothing that would disturb a terminal.
std::string Excerpt(std::string_view text);

}  // namespace host
