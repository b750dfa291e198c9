// The fixed texts at the head of the log and the status file.
#pragma once

#include <string>
#include <vector>

namespace linfit {

// Five lines of 61 characters, for the log and the status file.
std::vector<std::string> BannerLines();
// How a model must be written: 23 lines of 75, 77 or 79 characters, for the status file.
std::vector<std::string> HelpLines();

}  // namespace linfit
