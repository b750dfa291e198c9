#include "tdxdclib/results_file.h"

#include <algorithm>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include "base/short_string.h"
#include "base/temporary_file.h"
#include "base/text_file.h"
#include "tdx/tdx_file.h"
#include "tdxdclib/tdx_version.h"

namespace host {

namespace {

namespace fs = std::filesystem;

// For a message, as it stands.
std::string Quoted(std::string_view text) {
  std::string quoted(1, '"');
  quoted += text;
  return quoted += '"';
}

bool HoldsZeroByte(std::string_view text) {
  return text.find('\0') != std::string_view::npos;
}

// Where the file itself stands when `target` is a link to it.
fs::path ResolvedTarget(const fs::path& target) {
  return fs::is_symlink(target) && fs::exists(target) ? fs::canonical(target) : target;
}

}  // namespace

bool ResultsFile::Fail(std::string text) {
  if (error_count_ < std::numeric_limits<int>::max()) ++error_count_;
  errors_[static_cast<std::size_t>(LastError()) - 1] = std::move(text);
  return false;
}

bool ResultsFile::FailFile(const std::exception& error) {
  broken_ = true;
  try {
    std::string text = error.what();
    // SQLite's texts start with the name of the file it has open.
    const std::string name = Utf8(temporary_) + ": ";
    if (text.starts_with(name)) text.erase(0, name.size());
    return Fail("cannot write " + Utf8(target_) + ": " + text);
  } catch (const std::bad_alloc&) {
    return Fail("out of memory");  // short enough to need none
  }
}

// Does something with the file; a failure is counted, and nothing is done with the file any more.
template <class Step>
bool ResultsFile::OnFile(const Step& step) {
  if (broken_) return false;
  try {
    step();
    return true;
  } catch (const std::exception& error) {
    return FailFile(error);
  }
}

bool ResultsFile::Open(std::string_view file_name, std::string_view producer) {
  if (writer_ != nullptr) return Fail("a file is open already: " + Utf8(target_));
  Abandon();
  error_count_ = 0;
  if (file_name.empty()) return Fail("the file name is empty");
  if (HoldsZeroByte(file_name)) return Fail("the file name holds a zero byte");
  return OnFile([&] {
    target_ = FromUtf8(file_name);
    target_ = ResolvedTarget(target_);
    CheckTdxTarget(target_);
    temporary_ = MakeTemporaryName(target_);
    removal_.emplace(temporary_);
    CreateNew(temporary_, target_);
    writer_ = std::make_unique<TdxWriter>(temporary_, std::string(producer),
                                          std::string(kTdxLibraryVersion));
  });
}

// Empty when the symbol can be written.
std::string ResultsFile::SymbolFault(const TdxSymbolInfo& symbol) const {
  const std::string name = "symbol " + Quoted(symbol.name) + ": ";
  if (symbol.name.empty()) return "a symbol without a name";
  if (symbol.name.size() > kMaxTdxNameLength) return name + "the name is longer than 63 bytes";
  if (HoldsZeroByte(symbol.name)) return name + "the name holds a zero byte";
  if (symbol.dimension < 0 || symbol.dimension > kMaxTdxDimension) {
    return name + "dimension " + std::to_string(symbol.dimension) + " is not between 0 and 20";
  }
  if (symbol.type != kTdxParameter) {
    return name + "type " + std::to_string(symbol.type) + " is not supported, only 1 (parameter)";
  }
  const bool twice = std::ranges::any_of(symbols_, [&](const TdxSymbolInfo& earlier) {
    return IsSameName(earlier.name, symbol.name);
  });
  return twice ? name + "the file has a symbol of this name already" : "";
}

bool ResultsFile::StartSymbol(TdxSymbolInfo symbol) {
  if (broken_) return false;
  if (writer_ == nullptr) return Fail("no file is open: symbol " + Quoted(symbol.name));
  if (symbol_state_ != SymbolState::kNone) {
    return Fail("symbol " + Quoted(symbol.name) + ": the symbol before it is not done");
  }
  if (std::string fault = SymbolFault(symbol); !fault.empty()) {
    symbol_state_ = SymbolState::kRefused;
    return Fail(std::move(fault));
  }
  StartKeys(symbol.dimension);
  symbols_.push_back(std::move(symbol));
  symbol_state_ = SymbolState::kWriting;
  return OnFile([&] { writer_->StartSymbol(symbols_.size(), symbols_.back().dimension); });
}

// Symbols that follow each other often have the same keys: the first hint is the label before the
// last symbol's first one.
void ResultsFile::StartKeys(int dimension) {
  keys_.Reset(dimension);
  key_.assign(static_cast<std::size_t>(dimension), LabelTable::kNone);
  if (first_key_.size() != key_.size()) return;
  std::ranges::transform(first_key_, key_.begin(), [](std::int32_t label) { return label - 1; });
}

// Fills key_ with the numbers of the record's labels.
bool ResultsFile::NumberLabels(const char* keys) {
  for (std::size_t k = 0; k < key_.size(); ++k) {
    const std::string_view label = ShortStringText(keys + k * kShortStringBuffer);
    if (label.size() > kMaxTdxNameLength) {
      return Fail("symbol " + Quoted(symbols_.back().name) +
                  ": a label is longer than 63 bytes: " + Quoted(label));
    }
    if (HoldsZeroByte(label)) {
      return Fail("symbol " + Quoted(symbols_.back().name) + ": a label holds a zero byte");
    }
    key_[k] = labels_.Number(label, key_[k]);
  }
  return true;
}

std::string ResultsFile::KeyText() const {
  std::string text;
  for (const std::int32_t number : key_) {
    text += text.empty() ? "(" : ",";
    text += Quoted(labels_.Text(number));
  }
  return text + ")";
}

bool ResultsFile::WriteRecord(const char* keys, double value) {
  if (broken_ || symbol_state_ == SymbolState::kRefused) return false;
  if (symbol_state_ == SymbolState::kNone) return Fail("a record without a symbol");
  try {
    if (!NumberLabels(keys)) return false;
    if (!keys_.Add(key_)) {
      const std::string name = "symbol " + Quoted(symbols_.back().name);
      return Fail(key_.empty() ? name + ": a second value of a scalar"
                               : name + ": duplicate key " + KeyText());
    }
    writer_->AddRecord(key_, value, labels_);
    if (++symbols_.back().records == 1) first_key_ = key_;
    return true;
  } catch (const std::exception& error) {
    return FailFile(error);
  }
}

bool ResultsFile::EndSymbol() {
  if (broken_) return false;
  if (symbol_state_ == SymbolState::kNone) return Fail("the end of a symbol that was not begun");
  const bool written = symbol_state_ == SymbolState::kWriting;
  symbol_state_ = SymbolState::kNone;
  return written;
}

bool ResultsFile::PutInPlace() {
  if (error_count_ > 0) return false;
  if (symbol_state_ != SymbolState::kNone) {
    return Fail("symbol " + Quoted(symbols_.back().name) + " is not done");
  }
  return OnFile([&] { writer_->Finish(symbols_, labels_); }) && OnFile([&] {
           CheckTdxTarget(target_);  // it may have changed since
           PutTdxInPlace(temporary_, target_);
         });
}

bool ResultsFile::Close() {
  if (writer_ == nullptr) return error_count_ > 0 ? false : Fail("no file is open");
  const bool done = PutInPlace();
  Abandon();
  return done;
}

void ResultsFile::Abandon() {
  writer_.reset();
  if (!temporary_.empty()) {
    std::error_code ignored;  // after Close there is nothing to remove
    fs::remove(temporary_, ignored);
  }
  removal_.reset();
  temporary_.clear();
  broken_ = false;
  labels_.Clear();
  keys_.Reset(0);
  symbols_.clear();
  symbol_state_ = SymbolState::kNone;
  key_.clear();
  first_key_.clear();
}

int ResultsFile::CurrentDimension() const {
  return static_cast<int>(key_.size());
}

std::string ResultsFile::ErrorText(int number) const {
  if (number == 0) return "no error";
  if (number < 0 || number > LastError()) {
    return "there is no error " + std::to_string(number);
  }
  return errors_[static_cast<std::size_t>(number) - 1];
}

}  // namespace host
