#include "kervdclib/step_observer.h"

#include <algorithm>
#include <array>
#include <locale>
#include <sstream>

#include "base/text_file.h"

namespace host {

namespace {

// In the order of the groups.
constexpr std::array<std::string_view, 6> kStepNames{"open the environment",
                                                     "load the instance",
                                                     "start, options, rows and their names",
                                                     "columns and their names",
                                                     "estimate, report, results file",
                                                     "store the solution"};

}  // namespace

void StepObserver::End(std::string_view step, Clock::time_point now) {
  const std::chrono::duration<double> time = now - std::exchange(begun_, now);
  steps_.emplace_back(time.count(), step);
}

void StepObserver::Change(CallGroup group) {
  const bool columns = group_ == CallGroup::kColumns;
  End(kStepNames[static_cast<std::size_t>(group_)], columns ? last_call_ : Clock::now());
  // Of what the solver computes without a call, only the end shows.
  if (columns && group != CallGroup::kReport) {
    End(kStepNames[static_cast<std::size_t>(CallGroup::kReport)], Clock::now());
  }
  group_ = group;
}

void StepObserver::SeeStatusLine(std::string_view line) {
  if (!measures_) return;
  if (group_ == CallGroup::kColumns) Change(CallGroup::kReport);
  constexpr std::chrono::milliseconds kLong(1);
  const Clock::time_point now = Clock::now();
  if (now - begun_ >= kLong) {
    const std::size_t first = std::min(line.find_first_not_of(' '), line.size());
    End("before the line: " + std::string(line.substr(first)), now);
  }
}

void StepObserver::Write(const std::filesystem::path& file) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  End(kStepNames[static_cast<std::size_t>(group_)], Clock::now());
  for (const auto& [seconds, step] : steps_) text << seconds << '\t' << step << '\n';
  WriteText(file, text.str());
}

}  // namespace host
