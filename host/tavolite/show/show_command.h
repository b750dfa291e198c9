// `tavolite show FILE [SYMBOL]`: prints what a TDX file holds.
#pragma once

#include <iosfwd>

#include "tavolite/command/options.h"

namespace host {

// Returns the exit status: 0, or 2 after one line on `err`.
int RunShow(const ShowOptions& options, std::ostream& out, std::ostream& err);

}  // namespace host
