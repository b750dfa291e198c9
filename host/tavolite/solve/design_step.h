// The check of the design, beside the solver's run.
#pragma once

#include <filesystem>
#include <future>
#include <limits>
#include <stop_token>
#include <string>
#include <vector>

#include "instance/instance.h"
#include "tavolite/design/design_check.h"
#include "tavolite/solve/listing.h"

namespace host {

struct DesignFindings {
  bool full_rank = true;
  double condition = std::numeric_limits<double>::quiet_NaN();  // NaN: not known
  std::vector<std::string> warnings;
  std::vector<std::string> notes;
};

class DesignStep {
 public:
  DesignStep() = default;
  DesignStep(const DesignStep&) = delete;
  DesignStep& operator=(const DesignStep&) = delete;
  ~DesignStep() { Stop(); }

  // `constant_term` is the solver's option. A small check takes less time than a thread's start: it
  // is done at once.
  void Start(const std::filesystem::path& instance, int constant_term, bool is_small);
  // Waits for the check. What keeps it from being done is a warning.
  // Only once.
  DesignFindings End(const ModelNames& names, const Solution& solution);
  // Ends a check whose findings nobody wants; afterwards the instance is closed.
  void Stop();

 private:
  std::stop_source stop_;
  std::future<DesignCheck> check_;
};

}  // namespace host
