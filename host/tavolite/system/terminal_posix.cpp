#include <sys/ioctl.h>
#include <unistd.h>

#include "tavolite/system/terminal.h"

namespace host {

bool StandardErrorIsTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

bool StandardOutputIsTerminal() {
  return isatty(STDOUT_FILENO) != 0;
}

std::size_t TerminalWidth() {
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

}  // namespace host
