// Reading a model file into a GLPK problem.
#pragma once

#include <glpk.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tavolite/command/options.h"
#include "tavolite/models/glpk_session.h"

namespace host {

// What a front end has to tell besides the model itself.
struct ReaderNotes {
  std::vector<std::string> notes;      // what was assumed or added
  std::vector<std::string> warnings;   // what is probably not meant
  std::string output;                  // printed by the model's own statements
  std::vector<std::string> variables;  // as the model declares them, MathProg only
};

struct GlpkProblemDeleter {
  void operator()(glp_prob* problem) const { glp_delete_prob(problem); }
};
// Must go before the session does.
using GlpkProblem = std::unique_ptr<glp_prob, GlpkProblemDeleter>;

// Reads a MathProg model with the data in its own data section, in `data`, or (both missing) in the
// file of the same name with the suffix .dat beside it. File names inside the model count from the
// model's directory. Names variables that have no column because all their coefficients are zero.
// `scratch` is an existing directory for temporary files. Throws InputError.
GlpkProblem ReadMathProg(GlpkSession& session, const std::filesystem::path& model,
                         const std::filesystem::path& data, const std::filesystem::path& scratch,
                         ReaderNotes& notes);

// Reads an MPS or LP file. kMps takes the free form and the fixed form. Throws InputError.
GlpkProblem ReadMpsOrLp(GlpkSession& session, const std::filesystem::path& model,
                        InputFormat format);

}  // namespace host
