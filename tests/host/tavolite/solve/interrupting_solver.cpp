// A solver that behaves as if the user had pressed Ctrl-C (or another program had ended the
// command) while it was at work: begins a results file, signals its parent, then keeps on working
// for a minute.
#include <signal.h>
#include <unistd.h>

#include <cstdlib>

#include "base/temporary_file.h"

int main() {
  host::CreateTemporaryFile("linfit.tdx");
  const char* number = std::getenv("FAKE_SIGNAL");
  kill(getppid(), number == nullptr ? SIGINT : std::atoi(number));
  sleep(60);
}
