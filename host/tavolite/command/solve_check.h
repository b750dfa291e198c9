// What must hold between the options of a solve and its files before it starts.
#pragma once

#include <optional>

#include "tavolite/command/options.h"

namespace host {

// Holds the options against each other and against the format of the input: that which is stated,
// else that which its name tells. Returns the format. Throws InputError.
InputFormat CheckSolve(const SolveOptions& options, std::optional<InputFormat> stated);

}  // namespace host
