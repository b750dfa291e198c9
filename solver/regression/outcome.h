// What a step says about how it went.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace linfit {

// Receives a diagnostic line, in the order in which things happen.
using LineSink = std::function<void(std::string_view)>;
// The text of a condition that ends the run; empty when there is none.
using Failure = std::optional<std::string>;

}  // namespace linfit
