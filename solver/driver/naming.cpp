#include "driver/naming.h"

#include <algorithm>

#include "driver/output.h"

namespace linfit {
namespace {

constexpr int kNoNumber = -1;

// `uels`: the dictionary function for rows or that for columns.
void AppendDictionaryName(SolverRun& run, const decltype(Dct::dctRowUels)& uels, int number,
                          NameTable& names) {
  int symbol = 0;
  int dimension = 0;
  LabelNumbers numbers{};
  run.last_return_code = uels(run.dictionary, number, symbol, numbers, dimension);
  ShortText text;
  run.last_return_code = run.dct.dctSymName(run.dictionary, symbol, text);
  AppendName(names, symbol, text.View(), dimension);

  for (std::size_t k = 0; k < ArraySize(std::min(dimension, kMaxLabels)); ++k) {
    char quote = ' ';
    run.last_return_code = run.dct.dctUelLabel(run.dictionary, numbers[k], quote, text);
    AppendLabel(names, text.View(), numbers[k], quote);
  }
}

}  // namespace

void AppendRowName(SolverRun& run, int row, NameTable& names) {
  if (row == kNoNumber) FatalStop(run, "tavorow not correct");
  AppendDictionaryName(run, run.dct.dctRowUels, row, names);
}

void AppendColumnName(SolverRun& run, int column, NameTable& names) {
  if (column == kNoNumber) {
    AppendName(names, 0, "Constant", 0);
    return;
  }
  AppendDictionaryName(run, run.dct.dctColUels, column, names);
}

}  // namespace linfit
