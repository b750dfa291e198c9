// Names of elements, which are rows and columns: a symbol and its labels.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "instance/model.h"

namespace host {

struct ElementName {
  std::string symbol;
  std::vector<std::string> labels;
};

// Gives every distinct symbol and label its number, in the order of first use.
class DictionaryBuilder {
 public:
  // `dictionary` must outlive the builder.
  explicit DictionaryBuilder(Dictionary& dictionary) : dictionary_(dictionary) {}
  void Append(ElementNames& names, const ElementName& name);

 private:
  using Numbers = std::unordered_map<std::string, std::int32_t>;
  static std::int32_t NumberOf(Numbers& numbers, TextList& texts, const std::string& text);

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
