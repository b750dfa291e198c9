#include "tavolite/solve/results_step.h"

#include <bit>
#include <system_error>

#include "base/excerpt.h"
#include "base/text_file.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// Bit for bit, so that undefined values are the same, too.
bool IsSame(double a, double b) {
  return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || a == b ||
         (a != a && b != b);
}

bool AreEstimatesOf(const TdxRecords& estimates, const Solution& solution,
                    std::int32_t objective_column) {
  std::size_t record = 0;
  for (std::size_t j = 0; j < solution.columns.level.size(); ++j) {
    if (static_cast<std::int32_t>(j) == objective_column) continue;
    if (!IsSame(estimates.values[record++], solution.columns.level[j])) return false;
  }
  return true;
}

}  // namespace

AddedIntercept ReadAddedIntercept(TdxReader& results, const Solution& solution,
                                  std::int32_t objective_column) {
  const TdxRecords estimates = results.Read(results.Get("estimate"));
  const TdxRecords errors = results.Read(results.Get("se"));
  // The objective's column makes room for the intercept's record behind the others.
  const std::size_t records = solution.columns.level.size();
  if (estimates.values.size() != records || errors.values.size() != records ||
      !AreEstimatesOf(estimates, solution, objective_column)) {
    throw FileError(results.Name() + " holds the results of another solve by now");
  }
  return {estimates.values.back(), errors.values.back()};
}

std::string EarlierResults(const fs::path& results, fs::file_time_type start) {
  std::error_code none;
  if (!fs::is_regular_file(results, none) || fs::last_write_time(results, none) >= start) return {};
  try {
    const TdxReader reader(results);
    const TdxHeader& header = reader.Header();
    return Utf8(results) + " is of an earlier run, " +
           (header.run.model.empty() ? "" : "of " + Excerpt(header.run.model) + " ") + "at " +
           header.created;
  } catch (const FileError&) {
    return Utf8(results) + " is not of this run";
  }
}

}  // namespace host
