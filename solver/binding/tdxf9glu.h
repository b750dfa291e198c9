// The results-file library.
#pragma once

#include <span>
#include <string_view>

#include "binding/library.h"

namespace linfit {

// Writes one record of the symbol being written. The library says how many labels its index tuple
// has; a scalar has none.
class DataWriteStrFunction : public Function<int(IndexTuple, const ValueRecord&)> {
 public:
  DataWriteStrFunction(Library& library, const char* name, const Function<int()>& current_dimension)
      : Function(library, name), current_dimension_(current_dimension) {}

  int operator()(Handle object, const KeyTuple& keys, const ValueRecord& values) const {
    return Function::operator()(object, IndexTuple{keys, current_dimension_(object), trim_keys},
                                values);
  }

  bool trim_keys = true;  // trailing blanks of labels do not count

 private:
  const Function<int()>& current_dimension_;
};

struct Tdx : Library {
  Tdx();

  bool tdxCreate(Handle& handle, std::span<char> message) { return Create(handle, message); }
  int tdxFree(Handle& handle) { return Free(handle); }
  bool tdxGetReady(std::span<char> message) { return GetReady({}, message); }
  bool tdxGetReadyD(std::string_view directory, std::span<char> message) {
    return GetReady(directory, message);
  }

  LINFIT_ENTRY(tdxGetDLLVersion, int(ShortOut version));
  LINFIT_ENTRY(tdxOpenWrite,
               int(std::string_view file_name, std::string_view producer, int& error_number));
  LINFIT_ENTRY(tdxDataWriteStrStart, int(std::string_view symbol, std::string_view text,
                                         int dimension, int type, int user_info));
  DataWriteStrFunction tdxDataWriteStr{*this, "tdxDataWriteStr", tdxCurrentDim};
  LINFIT_ENTRY(tdxDataWriteDone, int());
  LINFIT_ENTRY(tdxClose, int());
  LINFIT_ENTRY(tdxGetLastError, int());
  LINFIT_ENTRY(tdxErrorStr, int(int error_number, ShortOut text));
  LINFIT_ENTRY(tdxErrorCount, int());
  LINFIT_ENTRY(tdxCurrentDim, int());
};

}  // namespace linfit
