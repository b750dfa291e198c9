// Name tables and keys for tests, in a short notation.
#pragma once

#include <string>
#include <vector>

#include "regression/labelled_name.h"
#include "resultsfile/results_content.h"

namespace linfit {

inline constexpr const char* kIntercept = "(intercept)";
inline constexpr const char* kBlank = "(blank)";

// One record per text: "b j1 k1" is the symbol b with two labels. A symbol's number is the code of
// its first letter.
inline NameTable Names(const std::vector<std::string>& texts) {
  NameTable names;
  for (const std::string& text : texts) {
    if (text == kIntercept) {
      AppendIntercept(names);
      continue;
    }
    if (text == kBlank) {
      AppendBlank(names);
      continue;
    }
    std::vector<std::string> words(1);
    for (const char c : text) {
      if (c == ' ') {
        words.emplace_back();
      } else {
        words.back() += c;
      }
    }
    AppendName(names, words[0][0], words[0], static_cast<int>(words.size()) - 1);
    for (std::size_t k = 1; k < words.size(); ++k) AppendLabel(names, words[k], 1, ' ');
  }
  return names;
}

inline std::string Joined(const KeyList& list) {
  std::string joined;
  for (std::size_t k = 0; k < list.count; ++k) {
    if (k > 0) joined += '.';
    joined += list.keys[k];
  }
  return joined;
}

}  // namespace linfit
