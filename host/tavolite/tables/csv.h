// Text tables: fields between separators, records that end with a line (RFC 4180).
//
//   record    = field *(separator field) [CR] LF
//   field     = *blank *character *blank / *blank DQUOTE *(character / 2DQUOTE) DQUOTE *blank
//
// Blanks around a field don't count. A quoted field may hold separators and line ends; a quote has
// no place in a field that does not start with one. Lines with nothing but blanks are skipped.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tavolite/tables/plan.h"
#include "tavolite/tables/rows.h"

namespace host {

// Takes the first record of `text`, which ends with a line feed: the column names, none when there
// is no record. On return `text` starts behind it, and `lines` is increased by the lines taken.
// `error` is empty, or tells what is wrong in line `lines` + 1.
std::vector<std::string> TakeHeader(std::string_view& text, char separator, std::int64_t& lines,
                                    std::string& error);

// Reads the records of `text`, whole records that end with a line feed, into `batch`, up to the
// first error. The batch refers to `text`.
void ParseRecords(std::string_view text, const TablePlan& plan, char separator, RowBatch& batch);

// Where the last whole record of `text` ends, 0 when there is none. `text` starts with a record.
std::size_t LastRecordEnd(std::string_view text);

}  // namespace host
