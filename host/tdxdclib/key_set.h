// The keys that a symbol has had so far, to find a duplicate.
#pragma once

#include <tsl/robin_set.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace host {

// A key is as many label numbers as the symbol has dimensions. With one dimension a bit per label
// will do. With more, keys mostly ascend, and then a look at the last one tells; the first key that
// doesn't ascend makes a hash table of all. Memory: 4 bytes per label number of a record, and with
// the hash table up to 32 bytes per record more.
class KeySet {
 public:
  KeySet() = default;
  KeySet(const KeySet&) = delete;
  KeySet& operator=(const KeySet&) = delete;

  // Starts anew for a symbol of `dimension`.
  void Reset(int dimension);
  // Adds the key; false when it was there already.
  bool Add(std::span<const std::int32_t> key);

 private:
  // The hash table holds places in keys_.
  struct Hash {
    const KeySet* keys;
    std::size_t operator()(std::uint32_t place) const;
  };
  struct Equal {
    const KeySet* keys;
    bool operator()(std::uint32_t a, std::uint32_t b) const;
  };

  bool AddLabel(std::int32_t label);
  [[nodiscard]] std::span<const std::int32_t> Key(std::size_t place) const;

  std::size_t dimension_ = 0;
  std::size_t count_ = 0;
  std::vector<bool> labels_;        // dimension 1: those seen
  std::vector<std::int32_t> keys_;  // dimension 2 and more: all keys, end to end
  // Empty while the keys ascend.
  tsl::robin_set<std::uint32_t, Hash, Equal> places_{0, Hash{this}, Equal{this}};
};

}  // namespace host
