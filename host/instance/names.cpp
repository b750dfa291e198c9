#include "instance/names.h"

namespace host {

namespace {

void AppendLabel(std::string_view label, std::string& text) {
  if (label.find_first_of(" \t,()[]'\"") == std::string_view::npos) {
    text += label;
    return;
  }
  const char quote = label.find('\'') == std::string_view::npos ? '\'' : '"';
  text += quote;
  text += label;
  text += quote;
}

}  // namespace

std::int32_t DictionaryBuilder::NumberOf(Numbers& numbers, TextList& texts,
                                         const std::string& text) {
  const auto [place, is_new] = numbers.try_emplace(text, static_cast<std::int32_t>(texts.size()));
  if (is_new) texts.push_back(text);
  return place->second;
}

void DictionaryBuilder::Append(ElementNames& names, const ElementName& name) {
  names.symbol.push_back(NumberOf(symbols_, dictionary_.symbols, name.symbol));
  for (const std::string& label : name.labels) {
    names.label.push_back(NumberOf(labels_, dictionary_.labels, label));
  }
  names.first.push_back(static_cast<std::int32_t>(names.label.size()));
}

void AppendDisplayName(const Dictionary& dictionary, const ElementNames& names, std::size_t i,
                       std::string& text) {
  text += dictionary.symbols[static_cast<std::size_t>(names.symbol[i])];
  const auto first = static_cast<std::size_t>(names.first[i]);
  const auto end = static_cast<std::size_t>(names.first[i + 1]);
  for (std::size_t k = first; k < end; ++k) {
    text += k == first ? '(' : ',';
    AppendLabel(dictionary.labels[static_cast<std::size_t>(names.label[k])], text);
  }
  if (first != end) text += ')';
}

std::string DisplayName(const Dictionary& dictionary, const ElementNames& names, std::size_t i) {
  std::string text;
  AppendDisplayName(dictionary, names, i, text);
  return text;
}

}  // namespace host
