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

TextPiece AddText(NameTable& names, std::string_view text) {
  const TextPiece piece{Place(names.text.size()), static_cast<std::uint32_t>(text.size())};
  names.text.append(text);
  return piece;
}

std::string_view View(const NameTable& names, TextPiece piece) {
  return std::string_view(names.text).substr(piece.offset, piece.length);
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
  const auto is_place_of_name = [&](std::int32_t place) { return SymbolAt(names, place) == name; };
  // The rows or columns of a symbol mostly follow one another.
  if (!names.records.empty()) {
    const LabelledName& last = names.records.back();
    if (last.symbol >= 0 && last.symbol_number == number && is_place_of_name(last.symbol)) {
      return last.symbol;
    }
  }
  const auto next = static_cast<std::int32_t>(names.symbols.size());
  const auto [entry, is_new] = names.symbol_places.try_emplace(number, next);
  if (!is_new && is_place_of_name(entry->second)) return entry->second;
  return AddSymbol(names, name);
}

void SetSymbol(NameTable& names, LabelledName& record, std::int32_t number, std::string_view name) {
  record.symbol = SymbolPlace(names, number, Fit(name, kLabelWidth));
  record.symbol_number = number;
}

const Label& LabelAt(const NameTable& names, const LabelledName& record, int k) {
  return names.labels[record.first_label + static_cast<std::size_t>(k)];
}

}  // namespace

void AppendName(NameTable& names, std::int32_t symbol_number, std::string_view symbol_name,
                const LabelText* labels, int dimension) {
  LabelledName record;
  SetSymbol(names, record, symbol_number, symbol_name);
  record.dimension = std::clamp(dimension, kInterceptDimension, kMaxLabels);
  record.first_label = Place(names.labels.size());
  for (int k = 0; k < record.dimension; ++k) {
    const TextPiece text = AddText(names, Fit(labels[k].text, kLabelWidth));
    names.labels.push_back({text, labels[k].number, labels[k].quote});
  }
  names.records.push_back(record);
}

void AppendIntercept(NameTable& names) {
  LabelledName record;
  record.dimension = kInterceptDimension;
  record.display_name = AddSymbol(names, "Intercept");
  names.records.push_back(record);
}

void AppendBlank(NameTable& names) {
  names.records.emplace_back();
}

std::string_view SymbolName(const NameTable& names, std::size_t i) {
  return SymbolAt(names, names.records[i].symbol);
}

std::string_view LabelOf(const NameTable& names, std::size_t i, int k) {
  const LabelledName& record = names.records[i];
  if (k >= record.dimension) return {};
  return View(names, LabelAt(names, record, k).text);
}

std::int32_t LabelNumber(const NameTable& names, std::size_t i, int k) {
  return LabelAt(names, names.records[i], k).number;
}

std::string_view FlatKey(const NameTable& names, std::size_t i) {
  return View(names, names.records[i].flat_key);
}

std::string DisplayName(const NameTable& names, std::size_t i) {
  const LabelledName& record = names.records[i];
  if (record.display_name >= 0) return std::string(SymbolAt(names, record.display_name));
  std::string text(SymbolName(names, i));
  for (int k = 0; k < record.dimension; ++k) {
    const Label& label = LabelAt(names, record, k);
    text += k == 0 ? '(' : ',';
    if (label.quote != ' ') text += label.quote;
    text += View(names, label.text);
    if (label.quote != ' ') text += label.quote;
  }
  if (record.dimension > 0) text += ')';
  return text.substr(0, kDisplayNameWidth);
}

void SetFlatKey(NameTable& names, std::size_t i, std::string_view key) {
  names.records[i].flat_key = AddText(names, Fit(key, kLabelWidth));
}

void RelabelRecord(NameTable& names, std::size_t i, int dimension, std::int32_t symbol_number,
                   std::string_view symbol_name, std::string_view label) {
  LabelledName& record = names.records[i];
  // Without labels, the symbol's name is the display name.
  if (record.display_name < 0) record.display_name = record.symbol;
  SetSymbol(names, record, symbol_number, symbol_name);
  record.dimension = std::clamp(dimension, 0, kMaxLabels);
  record.first_label = Place(names.labels.size());
  const TextPiece text = AddText(names, Fit(label, kLabelWidth));
  names.labels.resize(names.labels.size() + static_cast<std::size_t>(record.dimension),
                      {text, -1, ' '});
}

}  // namespace linfit
