// The tables of an instance and how arrays and texts stand in them; shared by the writer and the
// reader of instances and the solution's part.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/database.h"
#include "base/text_file.h"

namespace host {

static_assert(std::endian::native == std::endian::little, "blobs are little-endian");

inline constexpr std::int32_t kApplicationId = 0x6C696E66;
inline constexpr std::int32_t kInstanceVersion = 1;
inline constexpr std::int64_t kTextsPerBlock = 65536;

extern const char* const kInstanceTables;  // the statements that make them

template <class T>
constexpr std::string_view ElementType() {
  if constexpr (std::is_same_v<T, std::uint8_t>) return "uint8";
  if constexpr (std::is_same_v<T, std::int32_t>) return "int32";
  if constexpr (std::is_same_v<T, double>) return "float64";
}

// Opens an instance and checks that it is one that this program reads. Throws FileError.
Database OpenInstance(const std::filesystem::path& file, Database::Mode mode);

// The elements of a blob; its size has been checked.
template <class T>
void FromBlob(std::span<const std::byte> bytes, std::vector<T>& values) {
  values.resize(bytes.size() / sizeof(T));
  std::copy_n(bytes.data(), values.size() * sizeof(T),
              std::as_writable_bytes(std::span(values)).data());
}
template <class T>
std::vector<T> FromBlob(std::span<const std::byte> bytes) {
  std::vector<T> values;
  FromBlob(bytes, values);
  return values;
}

// Writes or replaces the array `name`. Throws FileError when it is too large for a blob.
void WriteArrayBytes(Database& database, std::string_view name, std::string_view type,
                     std::span<const std::byte> bytes);
template <class T>
void WriteArray(Database& database, std::string_view name, const std::vector<T>& values) {
  WriteArrayBytes(database, name, ElementType<T>(), std::as_bytes(std::span(values)));
}
// Throws FileError when `bytes` is more than a blob may hold; `what` goes into the message.
void CheckBlobSize(std::string_view what, std::size_t bytes);

// Throws FileError unless there is such an array with `count` elements, or with any number of them
// when `count` is negative.
void CheckArray(Statement& row, std::string_view name, std::string_view type,
                std::size_t element_size, std::int64_t count);

template <class T>
std::vector<T> ReadArray(Database& database, std::string_view name, std::int64_t count) {
  Statement row(database, "SELECT type, data FROM array WHERE name = ?");
  row.Bind(1, name);
  CheckArray(row, name, ElementType<T>(), sizeof(T), count);
  return FromBlob<T>(row.Blob(1));
}

}  // namespace host
