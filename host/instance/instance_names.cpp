#include "instance/instance_names.h"

#include <utility>

#include "instance/instance_check.h"

namespace host {

namespace {

TextList ReadTexts(ArrayTableReader& arrays, const std::string& kind) {
  const auto sizes = arrays.Read<std::uint8_t>(kind + "_size", -1);
  auto bytes = arrays.Read<char>(kind + "_text", -1);
  CheckTextBytes(kind, bytes.size());
  std::size_t total = 0;
  for (const std::uint8_t size : sizes) {
    Require(size >= 1 && size <= kMaxNameLength, "a symbol or label has no text or is too long");
    total += size;
  }
  Require(total == bytes.size(), "the texts do not fit their sizes");
  return {sizes, std::move(bytes)};
}

}  // namespace

Dictionary ReadDictionary(ArrayTableReader& arrays) {
  return {ReadTexts(arrays, "symbol"), ReadTexts(arrays, "label")};
}

ElementNames ReadElementNames(ArrayTableReader& arrays, const std::string& kind, std::size_t count,
                              const Dictionary& dictionary) {
  const auto elements = static_cast<std::int64_t>(count);
  ElementNames names;
  names.symbol = arrays.Read<std::int32_t>(kind + "_symbol", elements);
  names.first = arrays.Read<std::int32_t>(kind + "_first_label", elements + 1);
  names.label = arrays.Read<std::int32_t>(kind + "_label", -1);
  InContext("names of " + kind + "s",
            [&] { CheckNames(names, count, dictionary.symbols.size(), dictionary.labels.size()); });
  return names;
}

InstanceNames ReadInstanceNames(ArrayTableReader& arrays, std::size_t rows, std::size_t columns) {
  InstanceNames names{ReadDictionary(arrays), {}, {}};
  names.rows = ReadElementNames(arrays, "row", rows, names.dictionary);
  names.columns = ReadElementNames(arrays, "column", columns, names.dictionary);
  return names;
}

}  // namespace host
