#include "instance/column_values.h"

#include <algorithm>
#include <string>

#include "instance/instance_check.h"

namespace host {

ColumnValues::ColumnValues(ArrayTableReader& arrays, std::int64_t column_count) {
  const auto& all = arrays.Find("value", ElementType<double>(), -1);
  count_ = all.count;
  offset_ = all.offset;
  first_run_ = arrays.Read<std::int32_t>("column_first_run", column_count + 1);
  const auto places = arrays.Read<std::int64_t>("run_place", -1);
  const auto run_count = static_cast<std::int64_t>(places.size());
  const auto sizes = arrays.Read<std::int32_t>("run_size", run_count);
  Require(first_run_.front() == 0 && first_run_.back() == run_count &&
              std::ranges::is_sorted(first_run_),
          "the runs of values do not fit the columns");
  runs_.reserve(places.size());
  for (std::size_t j = 0; j + 1 < first_run_.size(); ++j) {
    std::int64_t end = 0;
    for (auto r = static_cast<std::size_t>(first_run_[j]);
         r < static_cast<std::size_t>(first_run_[j + 1]); ++r) {
      Require(
          sizes[r] >= 1 && sizes[r] <= count_ && places[r] >= 0 && places[r] <= count_ - sizes[r],
          "a run of values is not among the values");
      end += sizes[r];
      runs_.push_back({places[r], end});
    }
  }
}

std::span<const ColumnValues::Run> ColumnValues::RunsOf(std::int32_t column) const {
  const auto j = static_cast<std::size_t>(column);
  const auto first = static_cast<std::size_t>(first_run_.at(j));
  const auto end = static_cast<std::size_t>(first_run_.at(j + 1));
  return std::span(runs_).subspan(first, end - first);
}

std::int64_t ColumnValues::Entries(std::int32_t column) const {
  const auto runs = RunsOf(column);
  return runs.empty() ? 0 : runs.back().end;
}

void ColumnValues::ReadAny(ArrayReader& file, std::int64_t place, std::span<double> values) const {
  file.Read(offset_ + place * std::int64_t{sizeof(double)}, std::as_writable_bytes(values));
}

void ColumnValues::Read(ArrayReader& file, std::int32_t column, std::int64_t first,
                        std::span<double> values) const {
  const auto runs = RunsOf(column);
  auto run = std::ranges::upper_bound(runs, first, {}, &Run::end);
  while (!values.empty()) {
    const std::int64_t begin = run == runs.begin() ? 0 : std::prev(run)->end;
    const auto count = std::min(values.size(), static_cast<std::size_t>(run->end - first));
    ReadAny(file, run->place + first - begin, values.first(count));
    values = values.subspan(count);
    first = run->end;
    ++run;
  }
}

std::int32_t ColumnValues::ColumnAt(std::int64_t place) const {
  for (std::int32_t column = 0; column + 1 < static_cast<std::int32_t>(first_run_.size());
       ++column) {
    std::int64_t begin = 0;
    for (const Run& run : RunsOf(column)) {
      if (place >= run.place && place - run.place < run.end - begin) return column;
      begin = run.end;
    }
  }
  return -1;
}

}  // namespace host
