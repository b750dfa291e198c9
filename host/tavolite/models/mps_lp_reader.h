// Reading an MPS or LP file into a GLPK problem.
#pragma once

#include <filesystem>

#include "tavolite/command/options.h"
#include "tavolite/models/glpk_session.h"

namespace host {

// Reads an MPS or LP file. kMps takes the free form and the fixed form. Throws InputError.
GlpkProblem ReadMpsOrLp(GlpkSession& session, const std::filesystem::path& model,
                        InputFormat format);

}  // namespace host
