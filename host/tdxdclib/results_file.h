// One results-file object: a TDX file that is being written, and the errors on the way.
//
// States: idle, open, symbol in progress, and back. The records go to a temporary file, which takes
// the target's name at Close; an object that ends without Close removes it. A call in the wrong
// state, a refused symbol or record, and a failure of the file are errors; each has a number and a
// text. After a failure of the file, and while a symbol is refused, further calls fail without an
// error of their own, so that the last error stays the cause.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tdx/label_table.h"
#include "tdx/tdx_writer.h"
#include "tdxdclib/key_set.h"
#include "tdxdclib/removal_on_signal.h"

namespace host {

class ResultsFile {
 public:
  ResultsFile() = default;
  ResultsFile(const ResultsFile&) = delete;
  ResultsFile& operator=(const ResultsFile&) = delete;
  ~ResultsFile() { Abandon(); }

  // Each is true on success; false counts an error or follows one. Open forgets the errors of an
  // earlier file.
  bool Open(std::string_view file_name, std::string_view producer);
  bool StartSymbol(TdxSymbolInfo symbol);
  // `keys`: as many short strings as the symbol has dimensions, 256 bytes each.
  bool WriteRecord(const char* keys, double value);
  bool EndSymbol();
  // A file with errors isn't put in place.
  bool Close();
  // Ends without a file; the one that has the name stays as it is.
  void Abandon();

  // Of the symbol in progress; 0 without one.
  [[nodiscard]] int CurrentDimension() const;
  [[nodiscard]] int ErrorCount() const { return error_count_; }
  // 0 without an error.
  [[nodiscard]] int LastError() const { return std::min(error_count_, kMaxKeptErrors); }
  [[nodiscard]] std::string ErrorText(int number) const;

 private:
  enum class SymbolState { kNone, kWriting, kRefused };
  static constexpr int kMaxKeptErrors = 100;

  bool Fail(std::string text);
  bool FailFile(const std::exception& error);
  template <class Step>
  bool OnFile(const Step& step);
  [[nodiscard]] std::string SymbolFault(const TdxSymbolInfo& symbol) const;
  void StartKeys(int dimension);
  bool NumberLabels(const char* keys);
  [[nodiscard]] std::string KeyText() const;
  bool PutInPlace();

  std::filesystem::path target_;
  std::filesystem::path temporary_;
  std::optional<RemovalOnSignal> removal_;
  std::unique_ptr<TdxWriter> writer_;
  bool broken_ = false;  // the file failed
  LabelTable labels_;
  KeySet keys_;
  std::vector<TdxSymbolInfo> symbols_;
  SymbolState symbol_state_ = SymbolState::kNone;
  std::vector<std::int32_t> key_;  // of the last record; serves as a hint for the next one's labels
  std::vector<std::int32_t> first_key_;  // of the symbol; the next symbol may begin likewise
  int error_count_ = 0;
  // The first ones and the last one. A fixed place, so that an error for want of memory finds room.
  std::array<std::string, kMaxKeptErrors> errors_;
};

}  // namespace host
