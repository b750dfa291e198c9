#include "tavolite/solve/design_step.h"

#include <chrono>
#include <cmath>
#include <exception>

#include "tavolite/report/fit_data.h"

namespace host {

namespace {

bool IsPerfect(const DesignCheck& check, const Solution& solution) {
  const auto rss = solution.head_and_tail.find(kObjectiveCode);
  if (rss == solution.head_and_tail.end() || check.rows <= check.columns.size()) return false;
  const auto freedom = static_cast<double>(check.rows - check.columns.size());
  return std::sqrt(rss->second / freedom) <= kPerfectFit * check.response_size;
}

}  // namespace

void DesignStep::Start(const std::filesystem::path& instance, int constant_term, bool is_small) {
  // Without a thread to be had, the check is done when it is asked for.
  check_ = std::async(is_small ? std::launch::deferred : std::launch::async | std::launch::deferred,
                      [instance, constant_term, stop = stop_.get_token()] {
                        return CheckDesign(instance, constant_term, stop);
                      });
  if (is_small) check_.wait();
}

DesignFindings DesignStep::End(const ModelNames& names, const Solution& solution) {
  DesignFindings findings;
  try {
    const DesignCheck check = check_.get();
    findings.full_rank = check.rank.dependent.empty();
    findings.condition = check.rank.condition;
    findings.warnings = DesignWarnings(check, names.elements.dictionary, names.elements.columns);
    if (IsPerfect(check, solution)) {
      findings.notes.emplace_back(kPerfectFitNote);
    }
  } catch (const std::bad_alloc&) {
    findings.warnings.emplace_back(
        "whether the design has full rank is not known: not enough memory to check it");
  } catch (const std::exception& error) {
    findings.warnings.push_back("whether the design has full rank is not known: " +
                                std::string(error.what()));
  }
  return findings;
}

void DesignStep::Stop() {
  stop_.request_stop();
  const bool is_begun =
      check_.valid() && check_.wait_for(std::chrono::seconds(0)) != std::future_status::deferred;
  if (is_begun) check_.wait();
}

}  // namespace host
