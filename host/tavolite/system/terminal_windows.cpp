#include <windows.h>

#include "tavolite/system/terminal.h"

namespace host {

namespace {

bool IsConsole(DWORD stream) {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

}  // namespace

bool StandardErrorIsTerminal() {
  return IsConsole(STD_ERROR_HANDLE);
}

bool StandardOutputIsTerminal() {
  return IsConsole(STD_OUTPUT_HANDLE);
}

std::size_t TerminalWidth() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &info) == 0) return 0;
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

}  // namespace host
