#include "tdxdclib/key_set.h"

#include <algorithm>
#include <bit>

namespace host {

namespace {

constexpr std::size_t kFirstSlots = 1024;

std::uint64_t Hash(std::span<const std::int32_t> key) {
  std::uint64_t hash = 0;
  for (const std::int32_t label : key) {
    hash = (hash ^ static_cast<std::uint32_t>(label)) * 0x9E3779B97F4A7C15U;
    hash ^= hash >> 32;
  }
  return hash;
}

}  // namespace

void KeySet::Reset(int dimension) {
  dimension_ = static_cast<std::size_t>(dimension);
  count_ = 0;
  labels_.clear();
  keys_.clear();
  slots_.clear();
}

bool KeySet::Add(std::span<const std::int32_t> key) {
  if (dimension_ == 0) return count_++ == 0;
  if (dimension_ == 1) return AddLabel(key[0]);

  const bool ascends = count_ == 0 || std::ranges::lexicographical_compare(Key(count_ - 1), key);
  keys_.insert(keys_.end(), key.begin(), key.end());
  ++count_;
  if (slots_.empty() && ascends) return true;
  if (slots_.size() < 2 * count_) Rehash(std::max(kFirstSlots, std::bit_ceil(4 * count_)));
  if (Insert(count_ - 1)) return true;
  keys_.resize(keys_.size() - dimension_);
  --count_;
  return false;
}

bool KeySet::AddLabel(std::int32_t label) {
  const auto index = static_cast<std::size_t>(label);
  if (index >= labels_.size()) labels_.resize(std::max(index + 1, 2 * labels_.size()));
  if (labels_[index]) return false;
  labels_[index] = true;
  return true;
}

std::span<const std::int32_t> KeySet::Key(std::size_t index) const {
  return std::span(keys_).subspan(index * dimension_, dimension_);
}

bool KeySet::Insert(std::size_t index) {
  const std::span<const std::int32_t> key = Key(index);
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = Hash(key) & mask;
  for (; slots_[at] != 0; at = (at + 1) & mask) {
    if (std::ranges::equal(Key(slots_[at] - 1), key)) return false;
  }
  slots_[at] = static_cast<std::uint32_t>(index) + 1;
  return true;
}

// All keys but the last one, which the caller inserts.
void KeySet::Rehash(std::size_t slots) {
  slots_.assign(slots, 0);
  for (std::size_t index = 0; index + 1 < count_; ++index) Insert(index);
}

}  // namespace host
