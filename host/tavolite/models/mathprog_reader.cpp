#include "tavolite/models/mathprog_reader.h"

#include <algorithm>
#include <fstream>
#include <unordered_set>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/models/mathprog_text.h"
#include "tavolite/models/model_file.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMarker = "tavolite: variables in use";

// What a model printed. GLPK writes text files in the system's form.
std::string ReadOutput(const std::string& file) {
  std::string text = ReadModelFile(FromUtf8(file));
  for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.erase(at, 1);
  return text;
}

// Makes a directory the current one until the end of the scope.
class CurrentDirectory {
 public:
  explicit CurrentDirectory(const fs::path& directory) : before_(fs::current_path()) {
    fs::current_path(directory);
  }
  CurrentDirectory(const CurrentDirectory&) = delete;
  CurrentDirectory& operator=(const CurrentDirectory&) = delete;
  ~CurrentDirectory() {
    std::error_code ignored;
    fs::current_path(before_, ignored);
  }

 private:
  fs::path before_;
};

struct MathProgFiles {
  std::string model;   // as GLPK opens them
  std::string data;    // empty: the model's own data section
  std::string output;  // takes what the model prints
};

struct MathProgSteps {
  int model = 1;  // result of each step, 0 is success
  int data = 1;
  int generated = 1;
  bool displayed = false;
};

// Reads, generates and builds; `display` also runs the statements behind `solve`. False when a step
// failed.
bool Translate(GlpkSession& session, const MathProgFiles& files, bool display, GlpkProblem& problem,
               MathProgSteps& steps) {
  glp_prob* made = nullptr;
  glp_tran* translator = nullptr;
  session.Run([&] {
    made = glp_create_prob();
    translator = glp_mpl_alloc_wksp();
    steps.model = glp_mpl_read_model(translator, files.model.c_str(), files.data.empty() ? 0 : 1);
    if (steps.model != 0) return;
    steps.data = files.data.empty() ? 0 : glp_mpl_read_data(translator, files.data.c_str());
    if (steps.data != 0) return;
    steps.generated = glp_mpl_generate(translator, files.output.c_str());
    if (steps.generated != 0) return;
    glp_mpl_build_prob(translator, made);
    // Ends with the false check that stands behind the display, so that its result tells nothing.
    if (display) glp_mpl_postsolve(translator, made, GLP_SOL);
  });
  problem = GlpkProblem(made, {&session});
  glp_mpl_free_wksp(translator);
  return steps.generated == 0;
}

void NameMissingVariables(glp_prob* problem, const std::vector<std::string>& displayed,
                          ReaderNotes& notes) {
  std::unordered_set<std::string> columns;
  for (int j = 1; j <= glp_get_num_cols(problem); ++j) columns.insert(glp_get_col_name(problem, j));
  for (const std::string& name : displayed) {
    if (columns.contains(name)) continue;
    notes.warnings.push_back("variable " + name +
                             " has no coefficient other than zero: it is not in the model");
  }
}

// A first pass over a copy of the model that shows which variables are in use. Nothing here is an
// error: when the copy is not taken, the second pass over the model itself says why.
GlpkProblem ReadWithDisplay(GlpkSession& session, const std::string& text, const MathProgText& scan,
                            const MathProgFiles& files, const fs::path& scratch,
                            ReaderNotes& notes) {
  if (scan.variables.empty()) return {};
  const fs::path copy = scratch / "model.mod";
  std::ofstream(copy, std::ios::binary) << WithVariableDisplay(text, scan, kMarker);
  MathProgFiles copied = files;
  copied.model = Utf8(copy);
  GlpkProblem problem;
  MathProgSteps steps;
  const bool done = Translate(session, copied, true, problem, steps);
  std::error_code ignored;
  fs::remove(copy, ignored);
  if (!done) return {};
  const std::string output = ReadOutput(files.output);
  const std::size_t end = output.rfind(std::string("\n") + kMarker);
  if (end == std::string::npos) return {};
  notes.output = output.substr(0, end);
  NameMissingVariables(problem.get(), DisplayedVariables(output, kMarker), notes);
  return problem;
}

void NoteUnusedStatements(const MathProgText& scan, ReaderNotes& notes) {
  constexpr std::size_t kMostNamed = 5;
  const std::size_t count = scan.behind_solve.size();
  if (count == 0) return;
  std::string text = "statements behind `solve` are not run:";
  for (std::size_t i = 0; i < std::min(count, kMostNamed); ++i) {
    const auto& [keyword, line] = scan.behind_solve[i];
    text += (i == 0 ? " " : ", ") + keyword + " in line " + std::to_string(line);
  }
  if (count > kMostNamed) text += " and " + std::to_string(count - kMostNamed) + " more";
  notes.notes.push_back(text);
}

fs::path DataBeside(const fs::path& model, ReaderNotes& notes) {
  fs::path beside = model;
  beside.replace_extension(".dat");
  std::error_code error;
  if (beside == model || !fs::is_regular_file(beside, error)) return {};
  notes.notes.push_back("data from " + Utf8(beside));
  return beside;
}

// GLPK's own words for a product of coefficients and for squares that are written out.
std::string WithRemedy(const std::string& failure) {
  const bool is_nonlinear =
      failure.ends_with("multiplication of linear forms not allowed") ||
      failure.find("operand preceding ^ has invalid type") != std::string::npos ||
      failure.find("operand preceding ** has invalid type") != std::string::npos;
  return is_nonlinear ? failure +
                            " (coefficients stand in sums only: a model states `y = sum x*b` "
                            "and an objective of one variable, the solver takes the squares)"
                      : failure;
}

void Generate(GlpkSession& session, const MathProgFiles& files, const std::string& shown_model,
              const std::string& shown_data, GlpkProblem& problem, ReaderNotes& notes) {
  MathProgSteps steps;
  session.ForgetMessages();
  if (!Translate(session, files, false, problem, steps)) {
    const bool in_data = steps.model == 0 && steps.data != 0;
    throw InputError(WithRemedy(FailureLine(session.Messages(), in_data ? files.data : files.model,
                                            in_data ? shown_data : shown_model)));
  }
  notes.output = ReadOutput(files.output);
}

}  // namespace

GlpkProblem ReadMathProg(GlpkSession& session, const fs::path& model, const std::string& text,
                         const fs::path& data, const fs::path& scratch, ReaderNotes& notes) {
  const MathProgText scan = ScanMathProg(text);
  notes.variables = scan.variables;
  NoteUnusedStatements(scan, notes);
  fs::path data_file = data;
  if (data_file.empty() && !scan.has_data_section) data_file = DataBeside(model, notes);
  if (!data_file.empty()) ReadModelFile(data_file);

  MathProgFiles files;
  files.model = Utf8(model.filename());
  if (!data_file.empty()) files.data = Utf8(fs::absolute(data_file));
  const fs::path output = fs::absolute(scratch) / "model.out";
  files.output = Utf8(output);
  GlpkProblem problem;
  {
    const fs::path absolute_scratch = fs::absolute(scratch);
    const CurrentDirectory directory(fs::absolute(model).parent_path());
    problem = ReadWithDisplay(session, text, scan, files, absolute_scratch, notes);
    if (!problem) Generate(session, files, Utf8(model), Utf8(data_file), problem, notes);
  }
  std::error_code ignored;
  fs::remove(output, ignored);
  return problem;
}

}  // namespace host
