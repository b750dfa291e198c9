// The labels of a TDX file, each once, numbered from 1 in the order of their first use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class LabelTable {
 public:
  static constexpr std::int32_t kNone = 0;

  // The label's number; a new label gets the next one. `hint` is the number that the same key
  // position had in the last record, or kNone: neighbouring records mostly repeat a label or go on
  // to the next one, and then nothing is looked up.
  std::int32_t Number(std::string_view label, std::int32_t hint);

  [[nodiscard]] std::string_view Text(std::int32_t number) const;
  [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(ends_.size()); }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    std::int32_t number = kNone;
  };

  [[nodiscard]] bool Is(std::int32_t number, std::string_view label) const;
  // The slot that holds the label, or the empty one where it belongs.
  [[nodiscard]] std::size_t FindSlot(std::uint32_t hash, std::string_view label) const;
  void Grow();

  std::string text_;               // all labels, end to end
  std::vector<std::size_t> ends_;  // of label 1, 2, ... in text_
  std::vector<Slot> slots_;        // open addressing, a power of two, at most half full
};

}  // namespace host
