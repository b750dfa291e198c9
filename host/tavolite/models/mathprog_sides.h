// Which side of its constraints' equality sign a MathProg model has its data on.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tavolite/command/options.h"

namespace host {

// Read off the statements of the equality constraints: the data stand opposite the variables. Where
// one side is just 0, they stand beside the variables, and count for the side on which they would
// have a plus: `y - sum x*b = 0` is `y = sum x*b`. The objective's variable does not count. Nothing
// when no equality names a variable. Throws InputError, with `shown` as the model's name, the line
// and the name of a constraint that has variables on both sides, can't be told, or differs from
// the first one.
std::optional<DataSide> FindDataSide(std::string_view text, const std::string& shown);

}  // namespace host
