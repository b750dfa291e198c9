// Names of rows and columns as model files have them, taken apart into a symbol and its labels.
//
//   coeff                 a symbol without labels
//   coeff[a,'it''s',1]    MathProg: labels are bare or in single quotes, a quote inside is doubled
//   coeff(a,b) coeff[a,b] MPS and LP files, quotes as above where there are any
//   coeff_1_2             MPS and LP files on request: trailing groups of digits are labels
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "instance/model.h"

namespace host {

enum class NameStyle { kMathProg, kBrackets, kBracketsOrUnderscores };

struct ParsedName {
  std::string symbol;
  std::vector<std::string> labels;
};

// Throws InputError, with the name in the text, when the name was cut, has more than kMaxLabels
// labels, or a symbol or label that is empty or longer than kMaxNameLength bytes. A name of an MPS
// or LP file that does not have the form of a symbol with labels is a symbol as a whole.
ParsedName ParseName(std::string_view name, NameStyle style);

// Gives every distinct symbol and label its number, in the order of first use.
class DictionaryBuilder {
 public:
  // `dictionary` must outlive the builder.
  explicit DictionaryBuilder(Dictionary& dictionary) : dictionary_(dictionary) {}
  void Append(ElementNames& names, const ParsedName& name);

 private:
  using Numbers = std::unordered_map<std::string, std::int32_t>;
  static std::int32_t NumberOf(Numbers& numbers, std::vector<std::string>& texts,
                               const std::string& text);

  Dictionary& dictionary_;
  Numbers symbols_;
  Numbers labels_;
};

// The name of element i for people: symbol(label,label), labels quoted where they need it.
std::string DisplayName(const Dictionary& dictionary, const ElementNames& names, std::size_t i);
// The same, added to the end of `text`.
void AppendDisplayName(const Dictionary& dictionary, const ElementNames& names, std::size_t i,
                       std::string& text);

}  // namespace host
