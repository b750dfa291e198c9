#include "tavolite/solve/solve_files.h"

#include <system_error>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/system/program.h"

namespace host {
namespace {

namespace fs = std::filesystem;

bool IsSameFile(const fs::path& a, const fs::path& b) {
  std::error_code none;
  return fs::equivalent(a, b, none);
}

// An output must neither destroy what the solve reads nor fail after a long run. `kind` is the name
// of its option, too.
void CheckOutput(const fs::path& file, const std::string& kind, const SolveOptions& options) {
  for (const fs::path& input : {options.input, options.data, options.option_file}) {
    if (!input.empty() && IsSameFile(file, input)) {
      throw InputError("the " + kind + " would overwrite " + Utf8(input) + ": give another --" +
                       kind);
    }
  }
  std::error_code none;
  if (fs::is_directory(file, none)) throw InputError(Utf8(file) + ": is a directory");
  if (!fs::is_directory(fs::absolute(file).parent_path(), none)) {
    throw InputError("there is no directory for the " + kind + " " + Utf8(file));
  }
}

}  // namespace

fs::path FindSolver(const SolveOptions& options) {
  fs::path solver = options.solver;
  if (solver.empty()) solver = OwnProgram().parent_path() / ProgramFileName("linfit");
  std::error_code none;
  if (!fs::is_regular_file(solver, none)) throw InputError("there is no solver " + Utf8(solver));
  return fs::absolute(solver);
}

fs::path ChooseListing(const SolveOptions& options) {
  fs::path listing = options.listing;
  if (listing.empty()) listing = options.input.stem() += ".lst";
  CheckOutput(listing, "listing", options);
  return listing;
}

void CheckReport(const SolveOptions& options, const fs::path& listing) {
  if (options.report.empty()) return;
  CheckOutput(options.report, "report", options);
  if (fs::weakly_canonical(options.report) == fs::weakly_canonical(listing)) {
    throw InputError("report and listing have the same name: " + Utf8(listing));
  }
}

fs::path SystemDirectory(const fs::path& solver) {
  const fs::path directory = solver.parent_path();
  std::error_code none;
  return fs::exists(directory / kDefinitionFile, none) ? directory : OwnProgram().parent_path();
}

}  // namespace host
