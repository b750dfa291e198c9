#include "tdx/label_table.h"

namespace host {

namespace {

constexpr std::int32_t kLongRun = 1024;
// A run that is searched more often than once for so many of its labels is better hashed.
constexpr std::int32_t kLabelsPerSearch = 16;

// Whether `a` comes before `b`: the shorter one, and of equally long ones the lesser bytes.
bool IsLess(std::string_view a, std::string_view b) {
  return a.size() == b.size() ? a < b : a.size() < b.size();
}

}  // namespace

void LabelTable::Clear() {
  text_.clear();
  ends_.clear();
  run_first_ = 1;
  run_count_ = 0;
  run_searches_ = 0;
  hashed_.clear();
}

bool LabelTable::Is(std::int32_t number, std::string_view label) const {
  return number > kNone && number <= Count() && Text(number) == label;
}

std::string_view LabelTable::Text(std::int32_t number) const {
  const auto index = static_cast<std::size_t>(number - 1);
  const std::size_t begin = index == 0 ? 0 : ends_[index - 1];
  return std::string_view(text_).substr(begin, ends_[index] - begin);
}

std::int32_t LabelTable::FindHashed(std::string_view label) const {
  const auto found = hashed_.find(label);
  return found == hashed_.end() ? kNone : *found;
}

std::int32_t LabelTable::FindInRun(std::string_view label) {
  if (run_count_ == 0 || IsBehindRun(label)) return kNone;
  if (++run_searches_ > run_count_ / kLabelsPerSearch + kLongRun) {
    DissolveRun();
    return FindHashed(label);
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
  if (const std::int32_t found = FindHashed(label); found != kNone) return found;
  if (const std::int32_t found = FindInRun(label); found != kNone) return found;
  const bool continues =
      run_count_ > 0 && Count() == run_first_ + run_count_ - 1 && IsBehindRun(label);
  text_ += label;
  ends_.push_back(text_.size());
  if (continues) {
    ++run_count_;
  } else {
    StartRunOrHash();
  }
  return Count();
}

// A long run stays as it is when a label doesn't go on with it.
void LabelTable::StartRunOrHash() {
  if (run_count_ >= kLongRun) {
    hashed_.insert(Count());
  } else {
    DissolveRun();
    run_first_ = Count();
    run_count_ = 1;
  }
}

void LabelTable::DissolveRun() {
  for (std::int32_t k = 0; k < run_count_; ++k) hashed_.insert(run_first_ + k);
  run_count_ = 0;
  run_searches_ = 0;
}

}  // namespace host
