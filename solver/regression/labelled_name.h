// Names of the coefficients and of the observations.
//
// A name record (`LabelledName`) is that of one row or column of the model: dimension, symbol
// number and name, labels with their numbers, display name, and the flat key that the results file
// may give it. What a record holds keeps to these limits:
//   symbol name, label, flat key   63 characters each
//   labels                         20
//   display name                   250 characters
// The memory follows the content instead of the limits: records that follow each other and differ
// in nothing but their labels share what they have in common, a symbol's name is there once, and
// all labels of one table lie end to end in one buffer. A million observations with one short label
// each take about 16 MB. Most display names aren't stored at all; they are put together from the
// symbol name, the labels and their quote characters when they are asked for.
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

struct TextPiece {  // a part of NameTable::flat_text
  std::uint32_t offset = 0;
  std::uint32_t length = 0;
};

// Records that follow each other, with one symbol and one number of labels. A record of dimension
// -1 or with a display name that stays is a group of its own.
struct NameGroup {
  std::uint32_t first_record = 0;
  std::uint32_t first_label = 0;  // the first record's label 1; the other labels follow in order
  std::int32_t dimension = 0;     // number of labels of a record; -1 marks an intercept
  std::int32_t symbol_number = 0;
  std::int32_t symbol = -1;        // place in NameTable::symbols; -1: the symbol name is blank
  std::int32_t display_name = -1;  // place in NameTable::symbols of one that stays as it is
};

// The name records of all coefficients or of all observations, in order.
struct NameTable {
  std::size_t count = 0;  // of records
  std::vector<NameGroup> groups;
  std::vector<std::string> symbols;  // each symbol name once, and display names that stay
  std::unordered_map<std::int32_t, std::int32_t> symbol_places;  // symbol number to place
  // Of the labels: their quote characters (blank: it needs no quotes), each with the text behind
  // it; where each begins, and the end; their numbers.
  std::string label_text;
  std::vector<std::uint32_t> label_starts{0};
  std::vector<std::int32_t> label_numbers;
  std::string flat_text;             // characters of all flat keys
  std::vector<TextPiece> flat_keys;  // none, or one a record, blank until it is set
};

// Room for `count` records with a short label each. Others take more when they come.
void Reserve(NameTable& names, std::size_t count);

// Adds the name of a row or column: a symbol with `dimension` labels, of which 20 count and are
// added next. A negative dimension is that of an intercept. Here and below, trailing blanks of a
// text are removed, and a text beyond its limit is cut.
void AppendName(NameTable& names, std::int32_t symbol_number, std::string_view symbol_name,
                int dimension);
void AppendLabel(NameTable& names, std::string_view text, std::int32_t number, char quote);
// Adds the record of the added intercept: dimension -1, display name "Intercept".
void AppendIntercept(NameTable& names);
// Adds a record with dimension 0 and nothing else in it.
void AppendBlank(NameTable& names);

// The parts of record `i` (counted from 0); `k` counts labels from 0. A label that the record does
// not have is blank.
std::int32_t Dimension(const NameTable& names, std::size_t i);
std::int32_t SymbolNumber(const NameTable& names, std::size_t i);
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
