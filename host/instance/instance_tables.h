// The tables of an instance and how arrays stand in it; shared by the writer and the reader of
// instances and the solution's part.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/database.h"
#include "base/text_file.h"
#include "instance/array_file.h"

namespace host {

inline constexpr std::int32_t kApplicationId = 0x6C696E66;
inline constexpr std::int32_t kInstanceVersion = 3;

// The first row of a list of row numbers that don't follow each other.
inline constexpr std::int32_t kListed = -1;

extern const char* const kInstanceTables;  // the statements that make them

template <class T>
constexpr std::string_view ElementType() {
  if constexpr (sizeof(T) == 1) return "uint8";
  if constexpr (std::is_same_v<T, std::int32_t>) return "int32";
  if constexpr (std::is_same_v<T, std::int64_t>) return "int64";
  if constexpr (std::is_same_v<T, double>) return "float64";
}

// Opens an instance and checks that it is one that this program reads. Throws FileError.
Database OpenInstance(const std::filesystem::path& file, Database::Mode mode);

// What the instance says of its arrays as a whole.
struct ArrayHead {
  std::int64_t stamp;
  std::int64_t bytes;  // of the model's arrays; the solution's stand behind them
};
ArrayHead ReadArrayHead(Database& database);

// Writes arrays and enters them into the table `array`.
class ArrayTableWriter {
 public:
  ArrayTableWriter(Database& database, ArrayWriter& file);

  template <class T>
  void Write(std::string_view name, const std::vector<T>& values) {
    Begin(name);
    Append(std::span(values));
    End();
  }
  // The same in pieces.
  void Begin(std::string_view name);
  template <class T>
  void Append(std::span<const T> values) {
    type_ = ElementType<T>();
    count_ += static_cast<std::int64_t>(values.size());
    file_.Append(std::as_bytes(values));
  }
  template <class T>
  void Append(std::span<T> values) {
    Append(std::span<const T>(values));
  }
  void End();
  // Enters an array that the file holds already.
  void Enter(std::string_view name, std::string_view type, std::int64_t count, std::int64_t offset);

 private:
  Statement insert_;
  ArrayWriter& file_;
  std::string name_;
  std::string_view type_ = ElementType<double>();
  std::int64_t count_ = 0;
  std::int64_t offset_ = 0;
};

// Reads arrays by the table `array`. Every failure is a FileError.
class ArrayTableReader {
 public:
  ArrayTableReader(Database& database, const std::filesystem::path& instance);

  struct Place {
    std::string type;
    std::int64_t count;
    std::int64_t offset;
  };
  // Throws unless there is such an array with `count` elements, or with any number of them when
  // `count` is negative, inside of the file.
  const Place& Find(std::string_view name, std::string_view type, std::int64_t count) const;

  template <class T>
  std::vector<T> Read(std::string_view name, std::int64_t count) {
    const Place& place = Find(name, ElementType<T>(), count);
    std::vector<T> values(static_cast<std::size_t>(place.count));
    file_.Read(place.offset, std::as_writable_bytes(std::span(values)));
    return values;
  }
  [[nodiscard]] std::int64_t Stamp() const { return head_.stamp; }
  [[nodiscard]] ArrayReader& File() { return file_; }

 private:
  std::map<std::string, Place, std::less<>> places_;
  ArrayHead head_;
  ArrayReader file_;
};

}  // namespace host
