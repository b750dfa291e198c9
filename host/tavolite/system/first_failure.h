// Steps of which none is left out because an exception passes by: what must be waited for is waited
// for, and the failure comes out afterwards.
#pragma once

#include <exception>

namespace host {

class FirstFailure {
 public:
  // Does nothing any more once a step has failed.
  template <class Step>
  void Try(const Step& step) {
    if (failure_) return;
    try {
      step();
    } catch (const std::exception&) {
      failure_ = std::current_exception();
    }
  }
  void Rethrow() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  std::exception_ptr failure_;
};

}  // namespace host
