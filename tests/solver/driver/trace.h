// Looking into the trace of a run with the scripted libraries.
#pragma once

#include <string>
#include <vector>

#include "tests/doubles/scripted_run.h"

namespace linfit {

// The lines of the functions whose names start with one of `starts`.
std::vector<std::string> LinesOf(const doubles::ScriptedRun& run,
                                 const std::vector<std::string>& starts);
// Those of a text with blanks between them.
std::vector<std::string> Words(const std::string& text);
bool Contains(const std::vector<std::string>& lines, const std::string& line);
// The calls that free objects, in order.
std::vector<std::string> Freed(const doubles::ScriptedRun& run);
// The whole trace, with repeated calls of one function in a row as one name.
std::vector<std::string> CallOrder(const doubles::ScriptedRun& run);

// Ended by a fatal stop with `text` as the last line of status file and log; the model object and
// then the environment object were freed, and there is no solution.
void ExpectFatalStop(const doubles::ScriptedRun& run, const std::string& text);
// Ended with a solution.
void ExpectSolution(const doubles::ScriptedRun& run);

}  // namespace linfit
