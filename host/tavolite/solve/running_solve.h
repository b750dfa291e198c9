// What a solve has at work and on the disk while it runs: an interrupt ends and removes it.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tavolite/command/options.h"
#include "tavolite/solve/scratch.h"
#include "tavolite/system/child_process.h"

namespace host {

class RunningSolve {
 public:
  // From here on, an interrupt cleans up and ends the process. To be called once.
  static std::shared_ptr<RunningSolve> Start();

  // Throws InputError.
  void MakeScratch(const SolveOptions& options);
  [[nodiscard]] bool HasScratch() const { return scratch_ != nullptr; }
  [[nodiscard]] const std::filesystem::path& ScratchPath() const { return scratch_->Path(); }
  // The file `name` in it.
  [[nodiscard]] std::filesystem::path Scratch(const std::string& name) const {
    return scratch_->Path() / name;
  }
  void RemoveScratch();

  // Starts the solver, which waits for RunSolver. What it leaves half-written of its results, which
  // it puts into `results`, goes with it.
  void StartSolver(const std::filesystem::path& solver, const std::filesystem::path& results);
  // Has the solver do what the text of a control file says, as ChildProcess::Run, and removes what
  // it has left if it was killed.
  ChildProcess::Exit RunSolver(std::string_view control,
                               const std::function<void(std::string_view)>& on_output,
                               const std::function<void()>& meanwhile);
  // Ends a solver that has nothing to do.
  void EndWaitingSolver() { solver_.EndWaiting(); }

  // Has `write` fill a file beside `target` that then takes its name. What is no regular file, and
  // a file in a directory that takes no other, is written as it stands. `write` throws FileError.
  void WriteInPlace(const std::filesystem::path& target,
                    const std::function<void(const std::filesystem::path&)>& write);

 private:
  void CleanUp();
  std::filesystem::path BeginFile(const std::filesystem::path& target);
  void RemoveTemporary();

  std::unique_ptr<ScratchDirectory> scratch_;
  ChildProcess solver_;
  std::filesystem::path results_file_;
  std::filesystem::path temporary_;  // not yet in its place
};

}  // namespace host
