// Names of rows and columns: what is taken apart and put together again is the same name.
#include "base/input_error.h"
#include "tavolite/models/name_parser.h"
#include "tests/fuzz/fuzz_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto style : {host::NameStyle::kMathProg, host::NameStyle::kBrackets,
                           host::NameStyle::kBracketsOrUnderscores}) {
    try {
      const host::ElementName name = host::ParseName(text, style);
      fuzz::Check(name.labels.size() <= host::kMaxLabels, "few labels");
      for (const std::string& label : name.labels) {
        fuzz::Check(!label.empty() && label.size() <= host::kMaxNameLength, "length of labels");
      }
      host::Dictionary dictionary;
      host::ElementNames names;
      host::DictionaryBuilder(dictionary).Append(names, name);
      const std::string shown = host::DisplayName(dictionary, names, 0);
      fuzz::Check(shown.starts_with(name.symbol), "the symbol is shown first");
    } catch (const host::InputError&) {
    }
  }
  return 0;
}
