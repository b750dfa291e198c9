// What a solve leaves behind, and whether it is whole.
#pragma once

#include <filesystem>
#include <string>

#include "tests/faults/run.h"

namespace faults {

// Everything that a results file says, as text, without the time it was written at; "damaged: ..."
// when it can't be read, "" when there is none.
std::string ResultsText(const std::filesystem::path& file);

// A run without faults in a directory of its own, and what it printed and left.
struct Expected {
  std::string out;
  std::string listing;
  std::string results;  // of the run
  std::string before;   // the results text of the file that was there before it
};

// Empty when the run ended as it may: either as without a fault, or with a message and a status
// other than 0; never by a signal, with a half-written file or with something left behind.
// `directory` holds the user's files, the outputs and `temporary`, the directory for scratch files.
struct Verdict {
  const Expected& expected;
  const std::filesystem::path& directory;
  const Outcome& outcome;
  std::string out;
  std::string err;
  bool killed = false;  // on purpose
  bool may_leave_files =
      false;  // where nothing can be removed any more: no memory, no files, kill -9

  [[nodiscard]] std::string Fault() const;

 private:
  [[nodiscard]] std::string Leftover() const;
};

// Whether `text` is `whole` or, where a warning in `err` has said what is missing, what is left of
// it: it says nothing else than `whole` does but that warning.
bool IsPartOf(const std::string& text, const std::string& whole, const std::string& err);

std::string ReadText(const std::filesystem::path& file);

}  // namespace faults
