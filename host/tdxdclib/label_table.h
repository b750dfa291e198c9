// The labels of a TDX file, each once, numbered from 1 in the order of their first use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// Labels are found by hash, but for a run of ascending ones (shorter ones first), which is searched
// by halves: whether a label goes on with the run is told by one comparison. Row numbers and sorted
// names so never enter the hash table.
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
  // The label's number when the hash table or the run has it, else kNone.
  [[nodiscard]] std::int32_t Find(std::string_view label) const;
  std::int32_t FindInRun(std::string_view label);
  // True when the label would go on with the run.
  [[nodiscard]] bool IsBehindRun(std::string_view label) const;
  // For the last label, which doesn't go on with the run.
  void StartRunOrIndex();
  void DissolveRun();
  void Index(std::int32_t number);
  void Reserve(std::size_t labels);

  std::string text_;               // all labels, end to end
  std::vector<std::size_t> ends_;  // of label 1, 2, ... in text_
  std::int32_t run_first_ = 1;     // the run's labels have the numbers from here on
  std::int32_t run_count_ = 0;
  std::int32_t run_searches_ = 0;
  std::vector<Slot> slots_;  // open addressing, a power of two, at most half full
  std::size_t indexed_ = 0;  // how many labels they hold
};

}  // namespace host
