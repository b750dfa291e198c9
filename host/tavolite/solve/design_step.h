// The check of the design, beside the solver's run.
#pragma once

#include <future>
#include <limits>
#include <stop_token>
#include <string>
#include <vector>

#include "base/control_file.h"
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

  // The instance and the option file of `control` are there.
  void Start(const ControlFile& control);
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
