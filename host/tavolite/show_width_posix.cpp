#include <sys/ioctl.h>
#include <unistd.h>

#include "host/tavolite/show_command.h"

namespace host {

std::size_t TerminalWidth() {
  winsize size{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

}  // namespace host
