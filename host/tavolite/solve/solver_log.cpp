#include "tavolite/solve/solver_log.h"

#include <algorithm>

#include "base/text.h"

namespace host {
namespace {

constexpr std::string_view kResultsFile = "TDX file: ";
constexpr std::string_view kNoOptions = "Could not load option library.";
constexpr std::size_t kMaxLine = 4096;  // more of a line is of no use

}  // namespace

void SolverLog::Take(std::string_view piece) {
  while (!piece.empty()) {
    const std::size_t end = piece.find('\n');
    const std::string_view part = piece.substr(0, end);
    line_ += part.substr(0, kMaxLine - std::min(kMaxLine, line_.size()));
    if (end == std::string_view::npos) return;
    End();
    piece.remove_prefix(end + 1);
  }
}

void SolverLog::End() {
  line_.resize(StrippedEnd(line_, " \t\r").size());
  if (!line_.empty()) {
    if (line_.starts_with(kResultsFile)) results_file_ = line_.substr(kResultsFile.size());
    lacks_options_ = lacks_options_ || line_ == kNoOptions;
    last_line_ = line_;
  }
  line_.clear();
}

}  // namespace host
