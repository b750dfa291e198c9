// Texts in columns. A character of valid UTF-8 takes one column, of however many bytes it is, and
// so does each byte that belongs to none.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace linfit {

// `text` right-justified in `columns` columns; of a longer text its first ones.
std::string RightJustified(std::string_view text, std::size_t columns);

}  // namespace linfit
