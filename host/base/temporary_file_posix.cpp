#include <signal.h>
#include <unistd.h>

#include <cerrno>

#include "base/temporary_file.h"

namespace host {

int CurrentProcessNumber() {
  return static_cast<int>(getpid());
}

bool ProcessExists(int number) {
  return kill(number, 0) == 0 || errno != ESRCH;
}

void MoveOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::filesystem::rename(from, to);
}

}  // namespace host
