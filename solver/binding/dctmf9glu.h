// The dictionary library: names and index labels of rows and columns. The solver makes no
// dictionary of its own; it takes the model object's, and the library only has to be ready.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

// The library's functions in the order in which they are checked, each with its C++ type.
#define LINFIT_DCT_FUNCTIONS(entry)                                                      \
  entry(dctSymName, int(int symbol, ShortText& name));                                   \
  entry(dctUelLabel, int(int label, char& quote, ShortText& text));                      \
  entry(dctColUels, int(int column, int& symbol, LabelNumbers& labels, int& dimension)); \
  entry(dctRowUels, int(int row, int& symbol, LabelNumbers& labels, int& dimension))

struct Dct : Library {
  Dct();

  bool dctGetReady(std::span<char> message) { return GetReady({}, message); }
  bool dctGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_DCT_FUNCTIONS(LINFIT_ENTRY);
};

}  // namespace linfit
