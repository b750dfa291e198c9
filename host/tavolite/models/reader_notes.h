// What a front end has to tell besides the model itself.
#pragma once

#include <string>
#include <vector>

namespace host {

struct ReaderNotes {
  std::vector<std::string> notes;      // what was assumed or added
  std::vector<std::string> warnings;   // what is probably not meant
  std::string output;                  // printed by the model's own statements
  std::vector<std::string> variables;  // as the model declares them, MathProg only
};

}  // namespace host
