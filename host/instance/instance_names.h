// Reading the names that an instance holds.
#pragma once

#include <cstddef>
#include <string>

#include "instance/instance_tables.h"
#include "instance/model.h"

namespace host {

struct InstanceNames {
  Dictionary dictionary;
  ElementNames rows;
  ElementNames columns;
};

// Of an instance that has a dictionary. All throw FileError.
Dictionary ReadDictionary(ArrayTableReader& arrays);
// Of the `count` elements of a kind, "row" or "column".
ElementNames ReadElementNames(ArrayTableReader& arrays, const std::string& kind, std::size_t count,
                              const Dictionary& dictionary);
InstanceNames ReadInstanceNames(ArrayTableReader& arrays, std::size_t rows, std::size_t columns);

}  // namespace host
