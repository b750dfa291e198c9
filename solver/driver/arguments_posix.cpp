#include "driver/arguments.h"

namespace linfit {

std::string FirstArgument(int argc, char** argv) {
  return argc > 1 ? argv[1] : "";
}

}  // namespace linfit
