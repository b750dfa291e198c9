#include "host/tdxdclib/label_table.h"

#include <functional>

namespace host {

namespace {

constexpr std::size_t kFirstSlots = 1024;

std::uint32_t Hash(std::string_view label) {
  const std::uint64_t hash = std::hash<std::string_view>{}(label);
  return static_cast<std::uint32_t>(hash ^ (hash >> 32));
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

std::int32_t LabelTable::Number(std::string_view label, std::int32_t hint) {
  if (Is(hint + 1, label)) return hint + 1;
  if (Is(hint, label)) return hint;
  if (2 * (ends_.size() + 1) > slots_.size()) Grow();
  const std::uint32_t hash = Hash(label);
  Slot& slot = slots_[FindSlot(hash, label)];
  if (slot.number == kNone) {
    text_ += label;
    ends_.push_back(text_.size());
    slot = {hash, Count()};
  }
  return slot.number;
}

void LabelTable::Grow() {
  const std::vector<Slot> old = std::move(slots_);
  slots_.assign(old.empty() ? kFirstSlots : 2 * old.size(), Slot{});
  const std::size_t mask = slots_.size() - 1;
  for (const Slot& slot : old) {
    if (slot.number == kNone) continue;
    std::size_t at = slot.hash & mask;
    while (slots_[at].number != kNone) at = (at + 1) & mask;
    slots_[at] = slot;
  }
}

}  // namespace host
