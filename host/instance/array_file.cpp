#include "instance/array_file.h"

#include <cerrno>
#include <string_view>
#include <system_error>

#include "base/text_file.h"

namespace host {

namespace {

constexpr std::string_view kMark = "linfit arrays 1\n";

std::string Reason() {
  return errno == 0 ? std::string() : ": " + std::generic_category().message(errno);
}

std::span<const std::byte> BytesOf(const std::int64_t& number) {
  return std::as_bytes(std::span(&number, 1));
}

}  // namespace

std::filesystem::path ArrayPath(const std::filesystem::path& file) {
  std::filesystem::path path = file;
  return path += ".arrays";
}

ArrayWriter::ArrayWriter(const std::filesystem::path& file, std::ios::openmode mode,
                         std::int64_t size)
    : name_(Utf8(file)), size_(size) {
  errno = 0;
  stream_.open(file, mode | std::ios::binary);
  stream_.seekp(size);
  Check();
}

ArrayWriter::ArrayWriter(const std::filesystem::path& file, std::int64_t stamp)
    : ArrayWriter(file, std::ios::out | std::ios::trunc, 0) {
  Append(std::as_bytes(std::span(kMark)));
  Append(BytesOf(stamp));
}

ArrayWriter ArrayWriter::Behind(const std::filesystem::path& file, std::int64_t size) {
  return {file, std::ios::in | std::ios::out, size};
}

void ArrayWriter::Check() {
  if (!stream_) throw FileError("can't write " + name_ + Reason());
}

std::int64_t ArrayWriter::Begin() {
  constexpr std::byte kZeros[kArrayAlignment] = {};
  const std::int64_t over = size_ % kArrayAlignment;
  if (over != 0) Append(std::span(kZeros).first(static_cast<std::size_t>(kArrayAlignment - over)));
  return size_;
}

void ArrayWriter::Append(std::span<const std::byte> bytes) {
  errno = 0;
  stream_.write(reinterpret_cast<const char*>(bytes.data()),
                static_cast<std::streamsize>(bytes.size()));
  Check();
  size_ += static_cast<std::int64_t>(bytes.size());
}

void ArrayWriter::Close() {
  errno = 0;
  stream_.close();
  Check();
}

ArrayReader::ArrayReader(const std::filesystem::path& file, std::int64_t stamp)
    : name_(Utf8(file)) {
  errno = 0;
  // Without a buffer, so that what is read goes to its place at once.
  stream_.rdbuf()->pubsetbuf(nullptr, 0);
  stream_.open(file, std::ios::binary);
  stream_.seekg(0, std::ios::end);
  if (!stream_) Fail();
  size_ = stream_.tellg();
  char mark[kMark.size()];
  std::int64_t found = 0;
  Read(0, std::as_writable_bytes(std::span(mark)));
  Read(sizeof mark, std::as_writable_bytes(std::span(&found, 1)));
  if (std::string_view(mark, sizeof mark) != kMark) {
    throw FileError(name_ + ": no file of arrays");
  }
  if (found != stamp) throw FileError(name_ + ": belongs to another instance");
}

void ArrayReader::Read(std::int64_t offset, std::span<std::byte> bytes) {
  const auto count = static_cast<std::streamsize>(bytes.size());
  if (offset < 0 || offset > size_ || count > size_ - offset) {
    throw FileError(name_ + ": is cut short");
  }
  errno = 0;
  stream_.seekg(offset);
  stream_.read(reinterpret_cast<char*>(bytes.data()), count);
  if (!stream_) Fail();
}

void ArrayReader::Fail() {
  throw FileError("can't read " + name_ + (stream_.eof() ? ": is cut short" : Reason()));
}

}  // namespace host
