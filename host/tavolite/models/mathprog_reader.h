// Reading a MathProg model into a GLPK problem.
#pragma once

#include <filesystem>
#include <string>

#include "tavolite/models/glpk_session.h"
#include "tavolite/models/reader_notes.h"

namespace host {

// Reads the MathProg model `text`, the content of `model`, with the data in its own data section,
// in `data`, or (both missing) in the file of the same name with the suffix .dat beside it. File
// names inside the model count from the model's directory. Names variables that have no column
// because all their coefficients are zero. `scratch` is an existing directory for temporary files.
// Throws InputError.
GlpkProblem ReadMathProg(GlpkSession& session, const std::filesystem::path& model,
                         const std::string& text, const std::filesystem::path& data,
                         const std::filesystem::path& scratch, ReaderNotes& notes);

}  // namespace host
