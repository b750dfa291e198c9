#include "tavolite/solve/running_solve.h"

#include <system_error>
#include <utility>

#include "base/input_error.h"
#include "base/temporary_file.h"
#include "base/text_file.h"
#include "tavolite/system/interrupt.h"

namespace host {

namespace fs = std::filesystem;

// With the longest name of a file in it, a path reaches the solver in 255 bytes.
constexpr std::size_t kLongestScratch = 240;

std::shared_ptr<RunningSolve> RunningSolve::Start() {
  auto solve = std::make_shared<RunningSolve>();
  OnInterrupt([solve] { solve->CleanUp(); });
  return solve;
}

// Every other step that makes or removes something keeps interrupts waiting, so that all is known
// here.
void RunningSolve::CleanUp() {
  const int process = solver_.Stop();
  if (process != 0) RemoveTemporaryFiles(results_file_, process);
  std::error_code ignored;
  if (!temporary_.empty()) fs::remove(temporary_, ignored);
  if (scratch_ != nullptr) scratch_->Remove();
}

void RunningSolve::MakeScratch(const SolveOptions& options) {
  const WithoutInterrupt now;
  try {
    scratch_ = std::make_unique<ScratchDirectory>(options.work, options.keep);
  } catch (const fs::filesystem_error& error) {
    // Without a path, the system's place is none.
    const fs::path place = error.path1().parent_path();
    throw InputError("no scratch directory can be made in " +
                     (place.empty() ? "the place that TMPDIR names" : Utf8(place)) + ": " +
                     error.code().message() + "; name another with --work or TMPDIR");
  }
  if (Utf8(scratch_->Path()).size() > kLongestScratch) {
    throw InputError("the path of the scratch directory is longer than the solver takes, " +
                     std::to_string(kLongestScratch) +
                     " bytes; name another place with --work or TMPDIR");
  }
}

void RunningSolve::RemoveScratch() {
  if (scratch_ != nullptr) scratch_->Remove();
}

void RunningSolve::StartSolver(const fs::path& solver, const fs::path& results) {
  const WithoutInterrupt now;
  results_file_ = fs::absolute(results);
  solver_.Start(solver);
}

ChildProcess::Exit RunningSolve::RunSolver(std::string_view control,
                                           const std::function<void(std::string_view)>& on_output,
                                           const std::function<void()>& meanwhile) {
  const ChildProcess::Exit exit =
      solver_.Run(control, Scratch("control.txt"), on_output, meanwhile);
  if (exit.process != 0) RemoveTemporaryFiles(results_file_, exit.process);
  return exit;
}

fs::path RunningSolve::BeginFile(const fs::path& target) {
  const WithoutInterrupt now;
  std::error_code none;
  const bool exists = fs::exists(target, none);
  if (exists && !fs::is_regular_file(target, none)) return target;
  try {
    temporary_ = CreateTemporaryFile(target);
  } catch (const std::system_error& error) {
    if (!exists) throw FileError(Utf8(target) + ": can't be written: " + error.code().message());
    return target;
  }
  return temporary_;
}

void RunningSolve::RemoveTemporary() {
  const WithoutInterrupt now;
  std::error_code ignored;
  if (!temporary_.empty()) fs::remove(temporary_, ignored);
  temporary_.clear();
}

void RunningSolve::WriteInPlace(const fs::path& target,
                                const std::function<void(const fs::path&)>& write) {
  std::error_code none;
  // Where the name is a link, what it leads to is replaced.
  const fs::path whole = fs::is_symlink(target, none) ? fs::weakly_canonical(target, none) : target;
  fs::path file;
  try {
    file = BeginFile(whole);
    write(file);
    const WithoutInterrupt now;
    if (file != whole) MoveOver(file, whole);
    temporary_.clear();
  } catch (const FileError& error) {
    RemoveTemporary();
    std::string text = error.what();
    if (const std::size_t at = text.find(Utf8(file)); at != std::string::npos) {
      text.replace(at, Utf8(file).size(), Utf8(whole));
    }
    throw FileError(text);
  } catch (...) {
    RemoveTemporary();
    throw;
  }
}

}  // namespace host
