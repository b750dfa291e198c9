#include "driver/naming.h"

#include <algorithm>
#include <array>
#include <string_view>

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
  std::array<char, kLabelWidth> name;
  run.last_return_code = run.dct.dctSymName(run.dictionary, symbol, name);

  std::array<std::array<char, kLabelWidth>, kMaxLabels> texts;
  std::array<LabelText, kMaxLabels> labels;
  dimension = std::min(dimension, kMaxLabels);
  for (std::size_t k = 0; k < ArraySize(dimension); ++k) {
    labels[k].number = numbers[k];
    run.last_return_code =
        run.dct.dctUelLabel(run.dictionary, numbers[k], labels[k].quote, texts[k]);
    labels[k].text = Trimmed(texts[k]);
  }
  AppendName(names, symbol, Trimmed(name), labels.data(), dimension);
}

}  // namespace

void AppendRowName(SolverRun& run, int row, NameTable& names) {
  if (row == kNoNumber) FatalStop(run, "tavorow not correct");
  AppendDictionaryName(run, run.dct.dctRowUels, row, names);
}

void AppendColumnName(SolverRun& run, int column, NameTable& names) {
  if (column == kNoNumber) {
    AppendName(names, 0, "Constant", nullptr, 0);
    return;
  }
  AppendDictionaryName(run, run.dct.dctColUels, column, names);
}

}  // namespace linfit
