#include <windows.h>

#include "host/tavolite/progress.h"

namespace host {

bool StandardErrorIsTerminal() {
  DWORD mode = 0;
  return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

}  // namespace host
