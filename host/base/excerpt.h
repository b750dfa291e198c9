// Texts from outside as parts of messages.
#pragma once

#include <string>
#include <string_view>

namespace host {

bool IsControl(char c);

// A piece of a text for a message: at most some 40 bytes, nothing that would disturb a terminal.
std::string Excerpt(std::string_view text);

}  // namespace host
