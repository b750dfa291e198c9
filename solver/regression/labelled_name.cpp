#include "regression/labelled_name.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "text/trimmed.h"

namespace linfit {
namespace {

std::string_view Fit(std::string_view text, std::size_t width) {
  return Trimmed(text.substr(0, width));
}

// Places in a table are 32-bit numbers, which halves the records. A table beyond that is treated as
// one that doesn't fit into memory.
std::uint32_t Place(std::size_t place) {
  if (place > std::numeric_limits<std::uint32_t>::max()) throw std::length_error("name table");
  return static_cast<std::uint32_t>(place);
}

std::int32_t AddSymbol(NameTable& names, std::string_view name) {
  names.symbols.emplace_back(name);
  return static_cast<std::int32_t>(names.symbols.size() - 1);
}

std::string_view SymbolAt(const NameTable& names, std::int32_t place) {
  if (place < 0) return {};
  return names.symbols[static_cast<std::size_t>(place)];
}

std::int32_t SymbolPlace(NameTable& names, std::int32_t number, std::string_view name) {
  const auto next = static_cast<std::int32_t>(names.symbols.size());
  const auto [entry, is_new] = names.symbol_places.try_emplace(number, next);
  if (!is_new && SymbolAt(names, entry->second) == name) return entry->second;
  return AddSymbol(names, name);
}

std::size_t GroupPlace(const NameTable& names, std::size_t i) {
  const auto behind = std::ranges::upper_bound(names.groups, i, {}, &NameGroup::first_record);
  return static_cast<std::size_t>(behind - names.groups.begin()) - 1;
}

const NameGroup& GroupOf(const NameTable& names, std::size_t i) {
  return names.groups[GroupPlace(names, i)];
}

// The place in the table of label `k` of record `i`.
std::size_t LabelPlace(const NameGroup& group, std::size_t i, int k) {
  return group.first_label + (i - group.first_record) * static_cast<std::size_t>(group.dimension) +
         static_cast<std::size_t>(k);
}

std::string_view LabelText(const NameTable& names, std::size_t place) {
  const std::size_t begin = names.label_starts[place] + 1;
  return std::string_view(names.label_text).substr(begin, names.label_starts[place + 1] - begin);
}

// Whether the next record can join the last group.
bool Continues(const NameTable& names, std::int32_t symbol_number, std::string_view symbol_name,
               int dimension) {
  if (names.groups.empty()) return false;
  const NameGroup& last = names.groups.back();
  return last.dimension == dimension && dimension >= 0 && last.symbol_number == symbol_number &&
         last.symbol >= 0 && SymbolAt(names, last.symbol) == symbol_name && last.display_name < 0 &&
         LabelPlace(last, names.count, 0) == names.label_numbers.size();
}

NameGroup& AddGroup(NameTable& names) {
  NameGroup group;
  group.first_record = Place(names.count);
  group.first_label = Place(names.label_numbers.size());
  names.groups.push_back(group);
  ++names.count;
  return names.groups.back();
}

}  // namespace

void Reserve(NameTable& names, std::size_t count) {
  constexpr std::size_t kShortLabel = 8;
  names.label_text.reserve(count * kShortLabel);
  names.label_starts.reserve(count + 1);
  names.label_numbers.reserve(count);
}

void AppendName(NameTable& names, std::int32_t symbol_number, std::string_view symbol_name,
                int dimension) {
  const std::string_view name = Fit(symbol_name, kLabelWidth);
  const int kept = std::clamp(dimension, kInterceptDimension, kMaxLabels);
  if (Continues(names, symbol_number, name, kept)) {
    ++names.count;
    return;
  }
  const std::int32_t symbol = SymbolPlace(names, symbol_number, name);
  NameGroup& group = AddGroup(names);
  group.dimension = kept;
  group.symbol_number = symbol_number;
  group.symbol = symbol;
}

void AppendLabel(NameTable& names, std::string_view text, std::int32_t number, char quote) {
  names.label_text += quote;
  names.label_text += Fit(text, kLabelWidth);
  names.label_starts.push_back(Place(names.label_text.size()));
  names.label_numbers.push_back(number);
}

void AppendIntercept(NameTable& names) {
  const std::int32_t display_name = AddSymbol(names, "Intercept");
  NameGroup& group = AddGroup(names);
  group.dimension = kInterceptDimension;
  group.display_name = display_name;
}

void AppendBlank(NameTable& names) {
  AddGroup(names);
}

std::int32_t Dimension(const NameTable& names, std::size_t i) {
  return GroupOf(names, i).dimension;
}

std::int32_t SymbolNumber(const NameTable& names, std::size_t i) {
  return GroupOf(names, i).symbol_number;
}

std::string_view SymbolName(const NameTable& names, std::size_t i) {
  return SymbolAt(names, GroupOf(names, i).symbol);
}

std::string_view LabelOf(const NameTable& names, std::size_t i, int k) {
  const NameGroup& group = GroupOf(names, i);
  if (k >= group.dimension) return {};
  return LabelText(names, LabelPlace(group, i, k));
}

std::int32_t LabelNumber(const NameTable& names, std::size_t i, int k) {
  return names.label_numbers[LabelPlace(GroupOf(names, i), i, k)];
}

std::string_view FlatKey(const NameTable& names, std::size_t i) {
  if (names.flat_keys.empty()) return {};
  const TextPiece piece = names.flat_keys[i];
  return std::string_view(names.flat_text).substr(piece.offset, piece.length);
}

std::string DisplayName(const NameTable& names, std::size_t i) {
  const NameGroup& group = GroupOf(names, i);
  if (group.display_name >= 0) return std::string(SymbolAt(names, group.display_name));
  std::string text(SymbolAt(names, group.symbol));
  for (int k = 0; k < group.dimension; ++k) {
    const std::size_t place = LabelPlace(group, i, k);
    const char quote = names.label_text[names.label_starts[place]];
    text += k == 0 ? '(' : ',';
    if (quote != ' ') text += quote;
    text += LabelText(names, place);
    if (quote != ' ') text += quote;
  }
  if (group.dimension > 0) text += ')';
  return text.substr(0, kDisplayNameWidth);
}

void SetFlatKey(NameTable& names, std::size_t i, std::string_view key) {
  const std::string_view kept = Fit(key, kLabelWidth);
  names.flat_keys.resize(names.count);
  names.flat_keys[i] = {Place(names.flat_text.size()), static_cast<std::uint32_t>(kept.size())};
  names.flat_text += kept;
}

void RelabelRecord(NameTable& names, std::size_t i, int dimension, std::int32_t symbol_number,
                   std::string_view symbol_name, std::string_view label) {
  const std::int32_t symbol = SymbolPlace(names, symbol_number, Fit(symbol_name, kLabelWidth));
  NameGroup& group = names.groups[GroupPlace(names, i)];
  // Without labels, the symbol's name is the display name.
  if (group.display_name < 0) group.display_name = group.symbol;
  group.symbol = symbol;
  group.symbol_number = symbol_number;
  group.dimension = std::clamp(dimension, 0, kMaxLabels);
  group.first_label = Place(names.label_numbers.size());
  for (int k = 0; k < group.dimension; ++k) AppendLabel(names, label, -1, ' ');
}

}  // namespace linfit
