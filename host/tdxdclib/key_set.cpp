#include "tdxdclib/key_set.h"

#include <algorithm>

namespace host {

void KeySet::Reset(int dimension) {
  dimension_ = static_cast<std::size_t>(dimension);
  count_ = 0;
  labels_.clear();
  keys_.clear();
  places_.clear();
}

bool KeySet::Add(std::span<const std::int32_t> key) {
  if (dimension_ == 0) return count_++ == 0;
  if (dimension_ == 1) return AddLabel(key[0]);

  const bool ascends = count_ == 0 || std::ranges::lexicographical_compare(Key(count_ - 1), key);
  keys_.insert(keys_.end(), key.begin(), key.end());
  ++count_;
  if (places_.empty() && ascends) return true;
  if (places_.empty()) {
    for (std::size_t place = 0; place + 1 < count_; ++place) {
      places_.insert(static_cast<std::uint32_t>(place));
    }
  }
  if (places_.insert(static_cast<std::uint32_t>(count_ - 1)).second) return true;
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

std::span<const std::int32_t> KeySet::Key(std::size_t place) const {
  return std::span(keys_).subspan(place * dimension_, dimension_);
}

std::size_t KeySet::Hash::operator()(std::uint32_t place) const {
  std::uint64_t hash = 0;
  for (const std::int32_t label : keys->Key(place)) {
    hash = (hash ^ static_cast<std::uint32_t>(label)) * 0x9E3779B97F4A7C15U;
    hash ^= hash >> 32;
  }
  return static_cast<std::size_t>(hash);
}

bool KeySet::Equal::operator()(std::uint32_t a, std::uint32_t b) const {
  return std::ranges::equal(keys->Key(a), keys->Key(b));
}

}  // namespace host
