// The labels of a results file, each once, numbered from 1 in the order of their first use.
#pragma once

#include <tsl/robin_set.h>

#include <cstddef>
#include <cstdint>
#include <functional>
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

  LabelTable() = default;
  LabelTable(const LabelTable&) = delete;
  LabelTable& operator=(const LabelTable&) = delete;

  // The label's number; a new label gets the next one. `hint` is the number that the same key
  // position had in the last record, or kNone: neighbouring records mostly repeat a label or go on
  // to the next one, and then nothing is looked up.
  std::int32_t Number(std::string_view label, std::int32_t hint);

  [[nodiscard]] std::string_view Text(std::int32_t number) const;
  [[nodiscard]] std::int32_t Count() const { return static_cast<std::int32_t>(ends_.size()); }
  void Clear();

 private:
  // The hash table holds the labels' numbers.
  struct Hash {
    const LabelTable* table;
    std::size_t operator()(std::string_view label) const {
      return std::hash<std::string_view>{}(label);
    }
    std::size_t operator()(std::int32_t number) const { return operator()(table->Text(number)); }
  };
  struct Equal {
    using is_transparent = void;
    const LabelTable* table;
    bool operator()(std::int32_t a, std::int32_t b) const { return a == b; }
    bool operator()(std::string_view label, std::int32_t number) const {
      return label == table->Text(number);
    }
    bool operator()(std::int32_t number, std::string_view label) const {
      return label == table->Text(number);
    }
  };
  using HashTable = tsl::robin_set<std::int32_t, Hash, Equal, std::allocator<std::int32_t>, true>;

  [[nodiscard]] bool Is(std::int32_t number, std::string_view label) const;
  // The label's number when the hash table or the run has it, else kNone.
  [[nodiscard]] std::int32_t FindHashed(std::string_view label) const;
  std::int32_t FindInRun(std::string_view label);
  // True when the label would go on with the run.
  [[nodiscard]] bool IsBehindRun(std::string_view label) const;
  // For the last label, which doesn't go on with the run.
  void StartRunOrHash();
  void DissolveRun();

  std::string text_;               // all labels, end to end
  std::vector<std::size_t> ends_;  // of label 1, 2, ... in text_
  std::int32_t run_first_ = 1;     // the run's labels have the numbers from here on
  std::int32_t run_count_ = 0;
  std::int32_t run_searches_ = 0;
  HashTable hashed_{0, Hash{this}, Equal{this}};
};

}  // namespace host
