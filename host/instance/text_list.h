// Many short texts in one buffer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/text_file.h"

namespace host {

class TextList {
 public:
  TextList() = default;
  TextList(std::initializer_list<std::string_view> texts) {
    for (const std::string_view text : texts) push_back(text);
  }
  // `sizes` are those of the texts in `bytes`, which stand one after another: at most 4 GiB.
  TextList(std::span<const std::uint8_t> sizes, std::vector<char> bytes)
      : bytes_(std::move(bytes)) {
    starts_.reserve(sizes.size() + 1);
    for (const std::uint8_t size : sizes) starts_.push_back(starts_.back() + size);
  }

  // Throws FileError where the texts would take more than 4 GiB.
  void push_back(std::string_view text) {
    Require(text.size() <= std::numeric_limits<std::uint32_t>::max() - bytes_.size(),
            "symbols or labels take more than 4 GiB");
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    starts_.push_back(static_cast<std::uint32_t>(bytes_.size()));
  }
  void reserve(std::size_t count) { starts_.reserve(count + 1); }

  [[nodiscard]] std::size_t size() const { return starts_.size() - 1; }
  [[nodiscard]] bool empty() const { return size() == 0; }
  [[nodiscard]] std::string_view operator[](std::size_t i) const {
    return {bytes_.data() + starts_[i], starts_[i + 1] - starts_[i]};
  }
  [[nodiscard]] const std::vector<char>& Bytes() const { return bytes_; }
  bool operator==(const TextList&) const = default;

 private:
  std::vector<char> bytes_;
  std::vector<std::uint32_t> starts_{0};
};

}  // namespace host
