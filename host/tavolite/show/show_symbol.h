// One symbol of a TDX file as text.
//
//   table  columns dim1, dim2, ... and value; a matrix when the symbol is one and fits the width
//   csv    a line of column names, then one line per record
//   json   {"name":..., "text":..., "dimension":..., "records":[{"keys":[...], "value":...}, ...]}
#pragma once

#include <cstddef>
#include <string>

#include "tavolite/show/show_text.h"
#include "tdx/tdx_reader.h"

namespace host {

// `width` in columns: that of the terminal. `whole`: `records` holds all records of the symbol.
void PrintSymbolTable(const TdxSymbolInfo& symbol, const TdxRecords& records, bool whole,
                      std::size_t width, std::string& text);
void PrintSymbolCsv(const TdxRecords& records, CsvCells cells, std::string& text);
void PrintSymbolJson(const TdxSymbolInfo& symbol, const TdxRecords& records, std::string& text);

}  // namespace host
