// The values of an instance's columns. They make up nearly all of an instance and come first in its
// file of arrays, so that they may go there while the rest of the model isn't known yet.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

#include "instance/array_file.h"

namespace host {

// Values of one column that stand together.
struct ValueRun {
  std::int64_t place;  // of the first one, among the values of all columns
  std::int32_t count;
};

class ValueFile {
 public:
  // Begins the file of arrays of a new instance. All members throw FileError.
  explicit ValueFile(const std::filesystem::path& instance);

  // Gives the place of the first of them.
  std::int64_t Append(std::span<const double> values);

  [[nodiscard]] std::int64_t Stamp() const { return stamp_; }
  [[nodiscard]] std::int64_t Offset() const { return offset_; }  // of the first value in the file
  [[nodiscard]] std::int64_t Count() const { return count_; }
  // For the arrays behind the values.
  [[nodiscard]] ArrayWriter& Arrays() { return arrays_; }

 private:
  std::int64_t stamp_;
  ArrayWriter arrays_;
  std::int64_t offset_;
  std::int64_t count_ = 0;
};

}  // namespace host
