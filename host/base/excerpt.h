// Texts from outside as parts of messages and of tables for people.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace host {

bool IsControl(char c);

// The text without what would steer a terminal or turn the direction of writing: control characters
// (C0, DEL, C1) and bytes that aren't UTF-8 become \x1b and the like, bidirectional controls and
// Unicode's line ends \u202e. Characters in `keep` stay.
std::string Printable(std::string_view text, std::string_view keep = {});
// The same, straight to a stream and without taking memory.
void WritePrintable(std::ostream& out, std::string_view text, std::string_view keep = {});

// A printable piece of a text for a message: at most some 40 bytes.
std::string Excerpt(std::string_view text);

}  // namespace host
