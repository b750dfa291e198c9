#include <unistd.h>

#include "host/tavolite/progress.h"

namespace host {

bool StandardErrorIsTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

}  // namespace host
