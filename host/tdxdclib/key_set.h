// The keys that a symbol has had so far, to find a duplicate.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace host {

// A key is as many label numbers as the symbol has dimensions. With one dimension a bit per label
// will do. With more, keys mostly ascend, and then a look at the last one tells; the first key that
// doesn't ascend makes a hash table of all. Memory: 4 bytes per label number of a record, and with
// the hash table up to 16 bytes per record more.
class KeySet {
 public:
  // Starts anew for a symbol of `dimension`.
  void Reset(int dimension);
  // Adds the key; false when it was there already.
  bool Add(std::span<const std::int32_t> key);

 private:
  bool AddLabel(std::int32_t label);
  [[nodiscard]] std::span<const std::int32_t> Key(std::size_t index) const;
  bool Insert(std::size_t index);
  void Rehash(std::size_t slots);

  std::size_t dimension_ = 0;
  std::size_t count_ = 0;
  std::vector<bool> labels_;          // dimension 1: those seen
  std::vector<std::int32_t> keys_;    // dimension 2 and more: all keys, end to end
  std::vector<std::uint32_t> slots_;  // 1 + place in keys_; empty while the keys ascend
};

}  // namespace host
