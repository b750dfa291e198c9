// The command line.
#pragma once

#include <string>

namespace linfit {

// Command-line argument 1 in UTF-8; empty when there is none.
std::string FirstArgument(int argc, char** argv);

}  // namespace linfit
