#include "tavolite/solve/design_step.h"

#include <cmath>
#include <exception>

#include "tptdclib/option_table.h"

namespace host {

namespace {

constexpr const char* kDefinitionFile = "optlinfit.def";
constexpr int kDefaultConstantTerm = 2;
// A residual standard error of less than this, over the size of the response, is rounding.
constexpr double kRounding = 1e-13;

// As the solver takes it: of files with a fault it takes nothing.
int AddConstantTerm(const ControlFile& control) {
  OptionTable options;
  if (!options.ReadDefinition(control.system_directory / kDefinitionFile)) {
    return kDefaultConstantTerm;
  }
  if (!control.option_file.empty() && !options.ReadParameterFile(control.option_file)) {
    return kDefaultConstantTerm;
  }
  return options.Integer("ADD_CONSTANT_TERM");
}

bool IsPerfect(const DesignCheck& check, const Solution& solution) {
  const auto rss = solution.head_and_tail.find(kObjectiveCode);
  if (rss == solution.head_and_tail.end() || check.rows <= check.columns.size()) return false;
  const auto freedom = static_cast<double>(check.rows - check.columns.size());
  return std::sqrt(rss->second / freedom) <= kRounding * check.response_size;
}

}  // namespace

void DesignStep::Start(const ControlFile& control) {
  // Without a thread to be had, the check is done when it is asked for.
  check_ =
      std::async(std::launch::async | std::launch::deferred, [control, stop = stop_.get_token()] {
        return CheckDesign(control.instance, AddConstantTerm(control), stop);
      });
}

DesignFindings DesignStep::End(const ModelNames& names, const Solution& solution) {
  DesignFindings findings;
  try {
    const DesignCheck check = check_.get();
    findings.full_rank = check.rank.dependent.empty();
    findings.condition = check.rank.condition;
    findings.warnings = DesignWarnings(check, names.dictionary, names.columns);
    if (IsPerfect(check, solution)) {
      findings.notes.emplace_back(
          "the fit is essentially perfect: standard errors and tests are rounding");
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
  if (check_.valid()) check_.wait();
}

}  // namespace host
