#include "tavolite/solve/step_times.h"

#include <algorithm>
#include <fstream>
#include <locale>
#include <sstream>

#include "base/text_file.h"

namespace host {

double StepTimes::Lap() {
  const Clock::time_point now = Clock::now();
  const double seconds = std::chrono::duration<double>(now - last_).count();
  last_ = now;
  return seconds;
}

void StepTimes::End(const std::string& step) {
  steps_.emplace_back(Lap(), step);
}

void StepTimes::EndSolver(const std::filesystem::path& solver_steps) {
  const double whole = Lap();
  std::vector<std::pair<double, std::string>> inside;
  double sum = 0.0;
  std::ifstream in(solver_steps, std::ios::binary);
  in.imbue(std::locale::classic());
  double seconds = 0.0;
  std::string step;
  while (in >> seconds && in.get() == '\t' && std::getline(in, step)) {
    inside.emplace_back(seconds, step);
    sum += seconds;
  }
  steps_.emplace_back(std::max(0.0, whole - sum), "start and end the solver");
  steps_.insert(steps_.end(), inside.begin(), inside.end());
}

void StepTimes::Write(const std::filesystem::path& file) const {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  for (const auto& [seconds, step] : steps_) text << seconds << '\t' << step << '\n';
  WriteText(file, text.str());
}

}  // namespace host
