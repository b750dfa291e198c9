// What a front end throws for a model that can't be taken: one line that says what is wrong and
// where.
#pragma once

#include <stdexcept>

namespace host {

struct InputError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace host
