// The file beside an instance that holds its arrays: a mark, a stamp that the instance repeats,
// then arrays of numbers, each at a multiple of 64 bytes, so that a program may map the file and
// use them where they stand.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace host {

static_assert(std::endian::native == std::endian::little, "arrays are little-endian");

inline constexpr std::int64_t kArrayAlignment = 64;

// Of the instance `file`.
std::filesystem::path ArrayPath(const std::filesystem::path& file);

// Writes a new file, or adds arrays to one behind its first `size` bytes. All members throw
// FileError with the system's reason.
class ArrayWriter {
 public:
  ArrayWriter(const std::filesystem::path& file, std::int64_t stamp);
  static ArrayWriter Behind(const std::filesystem::path& file, std::int64_t size);

  // Begins an array and gives its place in the file.
  std::int64_t Begin();
  void Append(std::span<const std::byte> bytes);
  [[nodiscard]] std::int64_t Size() const { return size_; }
  void Close();

 private:
  ArrayWriter(const std::filesystem::path& file, std::ios::openmode mode, std::int64_t size);
  void Check();

  std::string name_;
  std::fstream stream_;
  std::int64_t size_ = 0;
};

// Reads pieces of such a file. It reads and does not map: a file that is cut short or a disk that
// fails shall be an error with a reason, and pieces that stay in the processor's cache cost next to
// nothing.
class ArrayReader {
 public:
  // Throws FileError when this is no such file, or not the one with this stamp.
  ArrayReader(const std::filesystem::path& file, std::int64_t stamp);

  [[nodiscard]] std::int64_t Size() const { return size_; }
  // Throws FileError when there are not so many bytes or they can't be read.
  void Read(std::int64_t offset, std::span<std::byte> bytes);

 private:
  [[noreturn]] void Fail();

  std::string name_;
  std::ifstream stream_;
  std::int64_t size_ = 0;
};

}  // namespace host
