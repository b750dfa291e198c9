#include "tavolite/tables/table_stream.h"

#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <streambuf>
#include <string>
#include <system_error>
#include <utility>

#include "base/input_error.h"
#include "base/text_file.h"
#include "tavolite/command/input_format.h"

namespace host {
namespace {

// Reads whole blocks only, as tables are read: nothing is held back.
class BlockBuffer : public std::streambuf {
 protected:
  // At most `count` bytes; fewer at the end only.
  virtual std::size_t Take(char* to, std::size_t count) = 0;

  std::streamsize xsgetn(char* to, std::streamsize count) override {
    return static_cast<std::streamsize>(Take(to, static_cast<std::size_t>(count)));
  }
};

class GzipBuffer : public BlockBuffer {
 public:
  explicit GzipBuffer(const std::filesystem::path& path) : name_(Utf8(path)) {
    errno = 0;
#ifdef _WIN32
    file_ = gzopen_w(path.c_str(), "rb");
#else
    file_ = gzopen(path.c_str(), "rb");
#endif
    if (file_ == nullptr) {
      throw InputError(name_ + ": can't be opened: " +
                       std::generic_category().message(errno == 0 ? ENOMEM : errno));
    }
    gzbuffer(file_, kBufferSize);
  }
  GzipBuffer(const GzipBuffer&) = delete;
  GzipBuffer& operator=(const GzipBuffer&) = delete;
  ~GzipBuffer() override {
    gzclose_r(file_);
  }

 protected:
  std::size_t Take(char* to, std::size_t count) override {
    constexpr std::size_t kMost = 1U << 30U;  // of one call
    std::size_t taken = 0;
    while (taken < count) {
      errno = 0;
      const int got =
          gzread(file_, to + taken, static_cast<unsigned>(std::min(count - taken, kMost)));
      int code = Z_OK;
      gzerror(file_, &code);
      // A packed file that was cut ends with Z_BUF_ERROR behind its last bytes.
      if (code != Z_OK && code != Z_STREAM_END) Fail(code);
      if (got <= 0) break;
      taken += static_cast<std::size_t>(got);
    }
    return taken;
  }

 private:
  [[noreturn]] void Fail(int code) const {
    if (code == Z_ERRNO) {
      throw InputError(name_ + ": can't be read: " + std::generic_category().message(errno));
    }
    if (code == Z_MEM_ERROR) throw std::bad_alloc();
    throw InputError(name_ + (code == Z_BUF_ERROR ? ": the packed file ends too early"
                                                  : ": the packed file is damaged"));
  }

  static constexpr unsigned kBufferSize = 256U << 10U;
  std::string name_;
  gzFile file_;
};

class StandardInputBuffer : public BlockBuffer {
 protected:
  std::size_t Take(char* to, std::size_t count) override {
    errno = 0;
    const std::size_t taken = std::fread(to, 1, count, stdin);
    if (taken < count && std::ferror(stdin) != 0) {
      throw InputError("standard input can't be read: " +
                       std::generic_category().message(errno == 0 ? EIO : errno));
    }
    return taken;
  }
};

// A stream that owns its buffer, and whose failures pass through.
template <class Buffer>
class BlockStream : public std::istream {
 public:
  template <class... Arguments>
  explicit BlockStream(Arguments&&... arguments)
      : std::istream(nullptr), buffer_(std::forward<Arguments>(arguments)...) {
    rdbuf(&buffer_);
    exceptions(std::ios::badbit);
  }

 private:
  Buffer buffer_;
};

}  // namespace

TableStream OpenTable(const SolveOptions& options) {
  const std::filesystem::path& input = options.input;
  if (IsStandardInput(input)) return {std::make_unique<BlockStream<StandardInputBuffer>>(), 0};
  if (IsPacked(input)) return {std::make_unique<BlockStream<GzipBuffer>>(input), 0};
  auto file = std::make_unique<std::ifstream>();
  file->rdbuf()->pubsetbuf(nullptr, 0);  // blocks are read as they are
  file->open(input, std::ios::binary);
  if (!*file) throw InputError(Utf8(input) + ": can't be opened");
  std::error_code code;
  const std::uintmax_t size = std::filesystem::file_size(input, code);
  return {std::move(file), code ? 0 : size};
}

}  // namespace host
