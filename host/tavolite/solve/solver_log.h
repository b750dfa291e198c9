// What the command picks from the solver's log as it comes by.
#pragma once

#include <string>
#include <string_view>

namespace host {

class SolverLog {
 public:
  // The next piece of the log; lines may be cut anywhere.
  void Take(std::string_view piece);
  // After the last piece.
  void End();

  // The last line that is not blank.
  [[nodiscard]] const std::string& LastLine() const { return last_line_; }
  // The results file as the solver has announced it, empty when it has not.
  [[nodiscard]] const std::string& ResultsFile() const { return results_file_; }
  // The solver went on without the options that it was given.
  [[nodiscard]] bool LacksOptions() const { return lacks_options_; }

 private:
  std::string line_;  // begun, not ended
  std::string last_line_;
  std::string results_file_;
  bool lacks_options_ = false;
};

}  // namespace host
