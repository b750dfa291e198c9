// Names of the coefficients and of the observations.
//
// A name record (`LabelledName`) is that of one row or column of the model: dimension, symbol
// number and name, labels with their numbers, display name, and the flat key that the results file
// may give it. What a record holds keeps to these limits:
//   symbol name, label, flat key   63 characters each
//   labels                         20
//   display name                   250 characters
// The memory follows the content instead of the limits: a record is a few numbers, and all texts of
// one table lie end to end in one buffer, a symbol's name once for all records of the symbol. A
// million observations with one short label each take about 50 MB. Most display names aren't stored
// at all; they are put together from the symbol name, the labels and their quote characters when
// they are asked for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace linfit {

inline constexpr std::size_t kLabelWidth = 63;
inline constexpr std::size_t kDisplayNameWidth = 250;
inline constexpr int kMaxLabels = 20;
inline constexpr int kInterceptDimension = -1;

struct TextPiece {  // a part of NameTable::text
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
};

struct Label {
  TextPiece text;
  std::int32_t number = 0;
  char quote = ' ';  // blank: the label needs no quotes
};

struct LabelledName {
  std::int32_t dimension = 0;  // number of labels; -1 marks an intercept
  std::int32_t symbol_number = 0;
  std::int32_t symbol = -1;        // place in NameTable::symbols; -1: the symbol name is blank
  std::int32_t display_name = -1;  // place in NameTable::symbols of one that stays as it is
  std::uint32_t first_label = 0;   // place of label 1 in NameTable::labels
  TextPiece flat_key;              // blank until the results file sets it
};

// The name records of all coefficients or of all observations, in order.
struct NameTable {
  std::vector<LabelledName> records;
  std::vector<std::string> symbols;  // each symbol name once, and display names that stay
  std::vector<Label> labels;         // the labels of record 0, then those of record 1, ...
  std::unordered_map<std::int32_t, std::int32_t> symbol_places;  // symbol number to place
  std::string text;  // characters of all labels and flat keys
};

// One label as the dictionary gives it, to be added to a table. Here and below, trailing blanks of
// a text are removed, and a text beyond its limit is cut.
struct LabelText {
  std::string_view text;
  std::int32_t number = 0;
  char quote = ' ';
};

// Adds the name of a row or column: a symbol with `dimension` labels, of which 20 count. A negative
// dimension is that of an intercept.
void AppendName(NameTable& names, std::int32_t symbol_number, std::string_view symbol_name,
                const LabelText* labels, int dimension);
// Adds the record of the added intercept: dimension -1, display name "Intercept".
void AppendIntercept(NameTable& names);
// Adds a record with dimension 0 and nothing else in it.
void AppendBlank(NameTable& names);

// The parts of record `i` (counted from 0); `k` counts labels from 0. A label that the record does
// not have is blank.
std::string_view SymbolName(const NameTable& names, std::size_t i);
std::string_view LabelOf(const NameTable& names, std::size_t i, int k);
std::int32_t LabelNumber(const NameTable& names, std::size_t i, int k);
std::string_view FlatKey(const NameTable& names, std::size_t i);
// Symbol name, then the labels in parentheses, each in its quote characters, separated by commas;
// cut at 250 characters.
std::string DisplayName(const NameTable& names, std::size_t i);

// Sets the flat key of record `i`; text beyond 63 characters is cut.
void SetFlatKey(NameTable& names, std::size_t i, std::string_view key);
// Gives record `i`, that of an intercept, a symbol of dimension `dimension` all of whose labels are
// `label` with number -1. The display name stays.
void RelabelRecord(NameTable& names, std::size_t i, int dimension, std::int32_t symbol_number,
                   std::string_view symbol_name, std::string_view label);

}  // namespace linfit
