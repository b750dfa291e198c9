// The results-file library.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

// The library's functions in the order in which they are checked, each with its C++ type.
#define LINFIT_TDX_FUNCTIONS(entry)                                                              \
  entry(tdxGetDLLVersion, int(ShortOut version));                                                \
  entry(tdxOpenWrite,                                                                            \
        int(std::string_view file_name, std::string_view producer, int& error_number));          \
  entry(tdxDataWriteStrStart, int(std::string_view symbol, std::string_view text, int dimension, \
                                  int type, int user_info));                                     \
  entry(tdxDataWriteStr, int(IndexTuple, const ValueRecord&));                                   \
  entry(tdxDataWriteDone, int());                                                                \
  entry(tdxClose, int());                                                                        \
  entry(tdxGetLastError, int());                                                                 \
  entry(tdxErrorStr, int(int error_number, ShortOut text));                                      \
  entry(tdxErrorCount, int());                                                                   \
  entry(tdxCurrentDim, int())

struct TdxFunctions : Library {
  using Library::Library;
  LINFIT_TDX_FUNCTIONS(LINFIT_ENTRY);
};

struct Tdx : TdxFunctions {
  Tdx();

  bool tdxCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int tdxFree(Handle& handle) { return Free(handle); }
  bool tdxGetReady(std::span<char> message) { return GetReady({}, message); }
  bool tdxGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  // Writes one record of the symbol being written. The library says how many labels its index tuple
  // has; a scalar has none.
  int tdxDataWriteStr(Handle object, std::span<const std::string_view> keys,
                      const ValueRecord& values) const {
    const IndexTuple tuple{keys, tdxCurrentDim(object), trim_keys};
    return TdxFunctions::tdxDataWriteStr(object, tuple, values);
  }

  bool trim_keys = true;  // trailing blanks of labels do not count
};

}  // namespace linfit
