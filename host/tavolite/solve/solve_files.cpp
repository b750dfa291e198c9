#include "tavolite/solve/solve_files.h"

#include <system_error>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/system/program.h"

namespace host {
namespace {

namespace fs = std::filesystem;

constexpr const char* kDefinitionFile = "optlinfit.def";

bool IsSameFile(const fs::path& a, const fs::path& b) {
  std::error_code none;
  return fs::equivalent(a, b, none);
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
  for (const fs::path& input : {options.input, options.data, options.option_file}) {
    if (!input.empty() && IsSameFile(listing, input)) {
      throw InputError("the listing would overwrite " + Utf8(input) + ": give another --listing");
    }
  }
  std::error_code none;
  if (fs::is_directory(listing, none)) throw InputError(Utf8(listing) + ": is a directory");
  if (!fs::is_directory(fs::absolute(listing).parent_path(), none)) {
    throw InputError("there is no directory for the listing " + Utf8(listing));
  }
  return listing;
}

fs::path SystemDirectory(const fs::path& solver) {
  const fs::path directory = solver.parent_path();
  std::error_code none;
  return fs::exists(directory / kDefinitionFile, none) ? directory : OwnProgram().parent_path();
}

}  // namespace host
