#include "tavolite/models/mps_lp_reader.h"

#include <string>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/models/model_file.h"

namespace host {
namespace {

// Null when the file isn't taken; `failure` tells why then. `mps_form` counts for MPS only.
GlpkProblem Read(GlpkSession& session, const std::string& file, bool is_lp, int mps_form,
                 std::string& failure) {
  session.ForgetMessages();
  glp_prob* made = nullptr;
  int result = 1;
  session.Run([&] {
    made = glp_create_prob();
    result = is_lp ? glp_read_lp(made, nullptr, file.c_str())
                   : glp_read_mps(made, mps_form, nullptr, file.c_str());
  });
  GlpkProblem problem(made, {&session});
  if (result == 0) return problem;
  failure = FailureLine(session.Messages(), file, file);
  return {};
}

}  // namespace

GlpkProblem ReadMpsOrLp(GlpkSession& session, const std::filesystem::path& model,
                        InputFormat format) {
  (void)ReadModelFile(model);  // says better than GLPK why it can't be opened
  const std::string file = Utf8(model);
  const bool is_lp = format == InputFormat::kLp;
  const int form = format == InputFormat::kFixedMps ? GLP_MPS_DECK : GLP_MPS_FILE;
  std::string failure;
  GlpkProblem problem = Read(session, file, is_lp, form, failure);
  if (problem == nullptr && format == InputFormat::kMps) {
    // Names with blanks are possible in the fixed form only. The form that gets farther is the one
    // meant.
    std::string fixed_failure;
    problem = Read(session, file, is_lp, GLP_MPS_DECK, fixed_failure);
    if (FailureLineNumber(fixed_failure, file) > FailureLineNumber(failure, file)) {
      failure = fixed_failure;
    }
  }
  if (problem == nullptr) throw InputError(failure);
  return problem;
}

}  // namespace host
