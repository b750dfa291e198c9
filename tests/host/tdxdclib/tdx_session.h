// The results-file library, loaded as the solver loads it, with short verbs for tests.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "binding/fixed_text.h"
#include "binding/tdxf9glu.h"
#include "tests/support/program.h"

namespace host {

class TdxSession {
 public:
  TdxSession() {
    std::array<char, 255> message{};
    if (!tdx_.tdxGetReadyD(TDX_LIBRARY_DIRECTORY, message) || !tdx_.tdxCreate(object_, message)) {
      throw std::runtime_error(std::string(linfit::Trimmed(message)));
    }
  }
  ~TdxSession() { tdx_.tdxFree(object_); }
  TdxSession(const TdxSession&) = delete;
  TdxSession& operator=(const TdxSession&) = delete;

  bool Open(const std::filesystem::path& file) {
    return tdx_.tdxOpenWrite(object_, testing_support::Utf8(file), "linfit", open_error) != 0;
  }
  bool Start(std::string_view name, int dimension, std::string_view text = "", int type = 1) {
    return tdx_.tdxDataWriteStrStart(object_, name, text, dimension, type, 0) != 0;
  }
  bool Record(const std::vector<std::string>& keys, double value) {
    const std::vector<std::string_view> views(keys.begin(), keys.end());
    return tdx_.tdxDataWriteStr(object_, views, {value}) != 0;
  }
  bool Done() { return tdx_.tdxDataWriteDone(object_) != 0; }
  bool Close() { return tdx_.tdxClose(object_) == 0; }
  int ErrorCount() { return tdx_.tdxErrorCount(object_); }
  std::string ErrorText(int number) {
    std::array<char, 255> text;
    tdx_.tdxErrorStr(object_, number, text);
    return std::string(linfit::Trimmed(text));
  }
  std::string LastError() { return ErrorText(tdx_.tdxGetLastError(object_)); }

  // A symbol as a whole: a record is its keys and its value.
  struct KeyedValue {
    std::vector<std::string> keys;
    double value;
  };
  bool Symbol(std::string_view name, int dimension, const std::vector<KeyedValue>& records,
              std::string_view text = "") {
    bool good = Start(name, dimension, text);
    for (const KeyedValue& record : records) good = Record(record.keys, record.value) && good;
    return Done() && good;
  }

  int open_error = 0;

 private:
  linfit::Tdx tdx_;
  linfit::Handle object_ = nullptr;
};

}  // namespace host
