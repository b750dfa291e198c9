#include "tdxdclib/label_table.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <utility>

namespace host {

namespace {

constexpr std::size_t kFirstSlots = 1024;
constexpr std::int32_t kLongRun = 1024;
// A run that is searched more often than once for so many of its labels is better hashed.
constexpr std::int32_t kLabelsPerSearch = 16;

std::uint32_t Hash(std::string_view label) {
  const std::uint64_t hash = std::hash<std::string_view>{}(label);
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

// Whether `a` comes before `b`: the shorter one, and of equally long ones the lesser bytes.
bool IsLess(std::string_view a, std::string_view b) {
  return a.size() == b.size() ? a < b : a.size() < b.size();
}

}  // namespace

bool LabelTable::Is(std::int32_t number, std::string_view label) const {
  return number > kNone && number <= Count() && Text(number) == label;
}

std::string_view LabelTable::Text(std::int32_t number) const {
  const auto index = static_cast<std::size_t>(number - 1);
  const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
  return std::string_view(text_).substr(begin, ends_[index] - begin);
}

std::size_t LabelTable::FindSlot(std::uint32_t hash, std::string_view label) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t at = hash & mask;
  while (slots_[at].number != kNone &&
         (slots_[at].hash != hash || Text(slots_[at].number) != label)) {
    at = (at + 1) & mask;
  }
  return at;
}

std::int32_t LabelTable::Find(std::string_view label) const {
  return slots_.empty() ? kNone : slots_[FindSlot(Hash(label), label)].number;
}

std::int32_t LabelTable::FindInRun(std::string_view label) {
  if (run_count_ == 0 || IsBehindRun(label)) return kNone;
  if (++run_searches_ > run_count_ / kLabelsPerSearch + kLongRun) {
    DissolveRun();
    return Find(label);
  }
  std::int32_t first = run_first_;
  for (std::int32_t count = run_count_; count > 0;) {
    const std::int32_t half = count / 2;
    const bool behind = IsLess(Text(first + half), label);
    first += behind ? half + 1 : 0;
    count = behind ? count - half - 1 : half;
  }
  return Text(first) == label ? first : kNone;
}

bool LabelTable::IsBehindRun(std::string_view label) const {
  return IsLess(Text(run_first_ + run_count_ - 1), label);
}

std::int32_t LabelTable::Number(std::string_view label, std::int32_t hint) {
  if (Is(hint + 1, label)) return hint + 1;
  if (Is(hint, label)) return hint;
  if (const std::int32_t found = Find(label); found != kNone) return found;
  if (const std::int32_t found = FindInRun(label); found != kNone) return found;
  const bool continues =
      run_count_ > 0 && Count() == run_first_ + run_count_ - 1 && IsBehindRun(label);
  text_ += label;
  ends_.push_back(text_.size());
  if (continues) {
    ++run_count_;
  } else {
    StartRunOrIndex();
  }
  return Count();
}

// A long run stays as it is when a label doesn't go on with it.
void LabelTable::StartRunOrIndex() {
  if (run_count_ >= kLongRun) {
    Index(Count());
  } else {
    DissolveRun();
    run_first_ = Count();
    run_count_ = 1;
  }
}

void LabelTable::DissolveRun() {
  Reserve(indexed_ + static_cast<std::size_t>(run_count_));
  for (std::int32_t k = 0; k < run_count_; ++k) Index(run_first_ + k);
  run_count_ = 0;
  run_searches_ = 0;
}

void LabelTable::Index(std::int32_t number) {
  Reserve(++indexed_);
  const std::string_view label = Text(number);
  const std::uint32_t hash = Hash(label);
  slots_[FindSlot(hash, label)] = {hash, number};
}

void LabelTable::Reserve(std::size_t labels) {
  if (2 * labels <= slots_.size()) return;
  const std::vector<Slot> old =
      std::exchange(slots_, std::vector<Slot>(std::bit_ceil(std::max(kFirstSlots, 2 * labels))));
  const std::size_t mask = slots_.size() - 1;
  for (const Slot& slot : old) {
    if (slot.number == kNone) continue;
    std::size_t at = slot.hash & mask;
    while (slots_[at].number != kNone) at = (at + 1) & mask;
    slots_[at] = slot;
  }
}

}  // namespace host
