// The dictionary library: names and index labels of rows and columns. The solver makes no
// dictionary of its own; it takes the model object's, and the library only has to be ready.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

struct Dct : Library {
  Dct();

  bool dctGetReady(std::span<char> message) { return GetReady({}, message); }
  bool dctGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_ENTRY(dctSymName, int(int symbol, TextOut name));
  LINFIT_ENTRY(dctUelLabel, int(int label, char& quote, TextOut text));
  LINFIT_ENTRY(dctColUels, int(int column, int& symbol, LabelNumbers& labels, int& dimension));
  LINFIT_ENTRY(dctRowUels, int(int row, int& symbol, LabelNumbers& labels, int& dimension));
};

}  // namespace linfit
