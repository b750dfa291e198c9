#include "tavolite/tables/text_table.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "base/input_error.h"
#include "tavolite/system/progress.h"
#include "tavolite/tables/csv.h"
#include "tavolite/tables/number.h"

namespace host {

namespace {

constexpr std::size_t kLargestBlock = 512U << 10U;  // its text and numbers fit a second-level cache
constexpr std::size_t kSmallestBlock = 64U << 10U;  // worth a change of threads
constexpr std::size_t kLongestRecord = 8U << 20U;

std::string OverlongRecord() {
  return "longer than " + std::to_string(kLongestRecord >> 20U) +
         " MB (a quote that is never closed?)";
}

// Bytes that keep their place and are not cleared before they are written.
struct Block {
  std::unique_ptr<char[]> bytes;
  std::size_t capacity = 0;
  std::size_t size = 0;
  bool overlong = false;  // a record that is longer than allowed

  [[nodiscard]] std::string_view Text() const { return {bytes.get(), size}; }

  void Reserve(std::size_t wanted) {
    if (wanted <= capacity) {
      return;
    }
    std::unique_ptr<char[]> larger(new char[wanted]);
    std::copy_n(bytes.get(), size, larger.get());
    bytes = std::move(larger);
    capacity = wanted;
  }
};

// Small enough that all threads have something to do.
std::size_t BlockSize(const TextSource& source) {
  constexpr std::uint64_t kBlocks = 16;
  if (source.block != 0) return source.block;
  if (source.size == 0) return kLargestBlock;
  return std::clamp(static_cast<std::size_t>(source.size / kBlocks), kSmallestBlock, kLargestBlock);
}

// Cuts the stream into blocks of whole records, the last of which gets a line end if it has none.
class BlockSource {
 public:
  explicit BlockSource(const TextSource& source)
      : source_(source), block_size_(BlockSize(source)) {}

  // False at the end.
  bool Next(Block& block) {
    block.size = 0;
    block.overlong = false;
    block.Reserve(std::max(block_size_, rest_.size()) + 1);
    std::copy(rest_.begin(), rest_.end(), block.bytes.get());
    block.size = rest_.size();
    rest_.clear();
    for (;;) {
      const std::size_t wanted = block.capacity - 1 - block.size;
      const std::size_t got = Read(block.bytes.get() + block.size, wanted);
      block.size += got;
      if (got < wanted) {
        return TakeLast(block);
      }
      if (const std::size_t end = LastRecordEnd(block.Text()); end > 0) {
        rest_.assign(block.bytes.get() + end, block.size - end);
        block.size = end;
        return true;
      }
      if (block.size > kLongestRecord) {
        block.overlong = true;
        return true;
      }
      block.Reserve(2 * block.capacity);
    }
  }

  // May be asked by any thread.
  [[nodiscard]] std::uint64_t BytesRead() const { return bytes_read_; }

 private:
  std::size_t Read(char* to, std::size_t count) {
    source_.stream->read(to, static_cast<std::streamsize>(count));
    if (source_.stream->bad()) {
      throw InputError(source_.name + ": can't be read");
    }
    const auto got = static_cast<std::size_t>(source_.stream->gcount());
    bytes_read_ += got;
    return got;
  }

  bool TakeLast(Block& block) {
    if (block.size > 0 && block.bytes[block.size - 1] != '\n') {
      block.bytes[block.size++] = '\n';
    }
    const std::size_t end = LastRecordEnd(block.Text());
    block.overlong = block.size - end > kLongestRecord;
    return block.size > 0;
  }

  const TextSource& source_;
  std::size_t block_size_;
  std::string rest_;  // begin of the next block's first record
  std::atomic<std::uint64_t> bytes_read_ = 0;
};

// Takes the mark at the start of UTF-8 off, and refuses other encodings by theirs.
std::string_view WithoutMark(std::string_view text, const std::string& name) {
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) {
    throw InputError(name + ":1: the file is in UTF-16; UTF-8 is needed");
  }
  return text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text;
}

std::string SeparatorName(char separator) {
  return separator == '\t' ? "a tab" : std::string("'") + separator + "'";
}

// What stands in a header that was taken for one column.
std::string LikelySeparator(const std::vector<std::string>& names) {
  for (const char separator : {';', '\t', ',', '|'}) {
    if (names.empty() || names[0].find(separator) == std::string::npos) continue;
    return (separator == '\t' ? "tab" : SeparatorName(separator)) + " takes the file apart";
  }
  return "sets another";
}

void CheckHeader(const TableHeader& header, char separator) {
  const auto& [names, where] = header;
  if (names.size() < 2) {
    throw InputError(where + "only one column, with " + SeparatorName(separator) +
                     " as the separator (--separator " + LikelySeparator(names) + ')');
  }
  if (std::all_of(names.begin(), names.end(), [](const std::string& name) {
        return ParseNumber(name).kind == NumberKind::kNumber;
      })) {
    throw InputError(where + "the first line holds numbers where the column names should stand");
  }
}

// Parses blocks in several threads; each waits for its turn to hand its rows over.
class ParallelReader {
 public:
  ParallelReader(const TextSource& source, BlockSource& blocks, const TablePlan& plan,
                 TableRows& rows)
      : source_(source),
        blocks_(blocks),
        plan_(plan),
        rows_(rows),
        progress_("reading " + source.name, source.progress) {}

  // Reads `first`, whose text from `records` on is still to be read, then all that follows.
  void Run(Block first, std::string_view records) {
    RowBatch batch;
    Parse(first, records, batch);
    rows_.Append(batch);
    if (source_.stream->eof()) {
      return;
    }
    if (source_.size > 0) {
      rows_.numbers.Expect(ExpectedRows(records.size(), batch.rows));
    }
    std::vector<std::jthread> helpers;
    try {
      for (unsigned i = 1; i < Threads(); ++i) {
        helpers.emplace_back([this] { Work(Block(), RowBatch()); });
      }
    } catch (const std::system_error&) {
      // The threads that are there do the work.
    }
    Work(std::move(first), std::move(batch));
    helpers.clear();
    if (failure_ != nullptr) {
      std::rethrow_exception(failure_);
    }
  }

 private:
  [[nodiscard]] unsigned Threads() const {
    return source_.threads != 0 ? source_.threads
                                : std::clamp(std::thread::hardware_concurrency(), 1U, 4U);
  }

  // Some more than the first rows let expect.
  [[nodiscard]] std::size_t ExpectedRows(std::size_t bytes, std::size_t rows) const {
    const double per_byte = static_cast<double>(rows) / static_cast<double>(bytes + 1);
    return static_cast<std::size_t>(1.03 * per_byte * static_cast<double>(source_.size)) + 1000;
  }

  void Parse(const Block& block, std::string_view records, RowBatch& batch) const {
    if (block.overlong) {
      batch.Start(plan_, 0);
      batch.error = OverlongRecord();
    } else {
      ParseRecords(records, plan_, source_.separator, batch);
    }
  }

  void Work(Block block, RowBatch batch) {
    try {
      std::uint64_t ticket = 0;
      while (Take(block, ticket)) {
        Parse(block, block.Text(), batch);
        if (!HandOver(batch, ticket)) {
          return;
        }
      }
    } catch (...) {
      const std::lock_guard lock(append_mutex_);
      failure_ = failure_ != nullptr ? failure_ : std::current_exception();
      stop_ = true;
      turn_.notify_all();
    }
  }

  bool Take(Block& block, std::uint64_t& ticket) {
    const std::lock_guard lock(read_mutex_);
    if (stop_ || !blocks_.Next(block)) {
      return false;
    }
    ticket = tickets_++;
    return true;
  }

  bool HandOver(const RowBatch& batch, std::uint64_t ticket) {
    std::unique_lock lock(append_mutex_);
    turn_.wait(lock, [&] { return stop_ || appended_ == ticket; });
    if (stop_) {
      return false;
    }
    rows_.Append(batch);
    ++appended_;
    turn_.notify_all();
    const std::uint64_t read = blocks_.BytesRead();
    progress_.Update(source_.size > 0 ? static_cast<double>(std::min(read, source_.size)) /
                                            static_cast<double>(source_.size)
                                      : -1.0);
    return true;
  }

  const TextSource& source_;
  BlockSource& blocks_;
  const TablePlan& plan_;
  TableRows& rows_;
  Progress progress_;
  std::mutex read_mutex_;  // guards blocks_, tickets_
  std::uint64_t tickets_ = 0;
  std::mutex append_mutex_;  // guards what follows, and rows_
  std::condition_variable turn_;
  std::uint64_t appended_ = 0;
  std::exception_ptr failure_;
  std::atomic<bool> stop_ = false;
};

}  // namespace

struct TextTable::State {
  explicit State(TextSource text_source) : source(std::move(text_source)), blocks(source) {}
  TextSource source;
  BlockSource blocks;
  Block block;               // at work
  std::string_view records;  // of `block`, behind the header
  std::int64_t lines = 0;    // up to there
};

TextTable::TextTable(TextSource source) : state_(std::make_unique<State>(std::move(source))) {}
TextTable::~TextTable() = default;

TableHeader TextTable::ReadHeader() {
  auto& [source, blocks, block, records, lines] = *state_;
  TableHeader header;
  for (bool first = true; header.names.empty(); first = false) {
    if (!blocks.Next(block)) {
      throw InputError(source.name + ": the table is empty");
    }
    records = first ? WithoutMark(block.Text(), source.name) : block.Text();
    std::string error;
    if (block.overlong) {
      error = OverlongRecord();
    } else {
      header.names = TakeHeader(records, source.separator, lines, error);
    }
    if (!error.empty()) {
      throw InputError(source.name + ":" + std::to_string(lines + 1) + ": " + error);
    }
  }
  header.where = source.name + ":" + std::to_string(lines) + ": ";
  CheckHeader(header, source.separator);
  return header;
}

TableRows TextTable::ReadRows(const TablePlan& plan, const std::filesystem::path& instance) {
  TableRows rows(plan, state_->source.name, /*rows_by_line=*/true, instance);
  rows.lines_read = state_->lines;
  ParallelReader(state_->source, state_->blocks, plan, rows)
      .Run(std::move(state_->block), state_->records);
  return rows;
}

}  // namespace host
