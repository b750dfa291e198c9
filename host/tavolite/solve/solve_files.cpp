#include "tavolite/solve/solve_files.h"

#include <string>
#include <system_error>
#include <vector>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/command/input_format.h"
#include "tavolite/system/program.h"
#include "tdx/tdx_file.h"

namespace host {
namespace {

namespace fs = std::filesystem;

struct Role {
  fs::path file;
  std::string name;
  const char* option = nullptr;  // that names it, where it is written
};

// Also where neither is there yet. What can't be replaced, such as a terminal, may serve twice.
bool IsSameFile(const fs::path& a, const fs::path& b) {
  std::error_code none;
  const fs::file_status status = fs::status(a, none);
  if (fs::exists(status)) return fs::is_regular_file(status) && fs::equivalent(a, b, none);
  return !fs::exists(b, none) && fs::weakly_canonical(a, none) == fs::weakly_canonical(b, none);
}

std::vector<Role> ReadFiles(const SolveOptions& options, const fs::path& solver) {
  std::vector<Role> files{{solver, "the solver"}};
  if (!IsStandardInput(options.input)) files.push_back({options.input, Utf8(options.input)});
  if (options.format == InputFormat::kMathProg && options.data.empty()) {
    fs::path data = options.input;
    files.push_back({data.replace_extension(".dat"), Utf8(data)});
  }
  for (const fs::path& file : {options.data, options.option_file}) {
    if (!file.empty()) files.push_back({file, Utf8(file)});
  }
  return files;
}

void CheckPlace(const Role& output) {
  std::error_code none;
  if (fs::is_directory(output.file, none)) throw InputError(Utf8(output.file) + ": is a directory");
  if (!fs::is_directory(fs::absolute(output.file).parent_path(), none)) {
    throw InputError("there is no directory for " + output.name + " " + Utf8(output.file));
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
  return options.listing.empty() ? FromUtf8(ModelName(options.input) + ".lst") : options.listing;
}

void CheckFiles(const SolveOptions& options, const fs::path& solver, const fs::path& listing,
                const fs::path& results) {
  std::vector<Role> taken = ReadFiles(options, solver);
  const Role outputs[] = {{listing, "the listing", "--listing"},
                          {options.report, "the report", "--report"},
                          {options.timing, "the timing", "--timing"},
                          {results, "the results file", "--results"}};
  for (const Role& output : outputs) {
    if (output.file.empty()) continue;
    for (const Role& other : taken) {
      if (!IsSameFile(output.file, other.file)) continue;
      throw InputError(output.name + " would overwrite " + other.name + ": give another " +
                       output.option);
    }
    CheckPlace(output);
    taken.push_back(output);
  }
  try {
    CheckTdxTarget(results);
  } catch (const FileError& error) {
    throw InputError("the results file can't be " + Utf8(results) + ": " + error.what() +
                     "; give another --results");
  }
}

fs::path SystemDirectory(const fs::path& solver) {
  const fs::path directory = solver.parent_path();
  std::error_code none;
  return fs::exists(directory / kDefinitionFile, none) ? directory : OwnProgram().parent_path();
}

}  // namespace host
