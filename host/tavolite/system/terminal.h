// What the command must know of the terminal it prints to.
//
// One implementation per system: terminal_posix.cpp, terminal_windows.cpp.
#pragma once

#include <cstddef>

namespace host {

bool StandardErrorIsTerminal();
bool StandardOutputIsTerminal();

// Columns of the terminal behind standard output, 0 when there is none.
std::size_t TerminalWidth();

}  // namespace host
