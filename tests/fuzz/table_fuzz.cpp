// Text tables. A table is read as one block by one thread, and again in small blocks by two: both
// must give the same model or the same message.
#include <sstream>

#include "base/input_error.h"
#include "tavolite/tables/make_model.h"
#include "tavolite/tables/text_table.h"
#include "tests/fuzz/fuzz_input.h"

namespace {

// A model's numbers and names as text, or the message.
std::string Outcome(const std::string& text, const host::TableOptions& options, std::size_t block,
                    unsigned threads) {
  std::istringstream stream(text);
  try {
    host::TextTable table({.stream = &stream,
                           .name = "t",
                           .block = block,
                           .threads = threads,
                           .separator = *options.separator});
    const host::TablePlan plan = host::MakeTablePlan(table.ReadHeader(), options);
    const host::TableModel made =
        host::MakeTableModel(plan, table.ReadRows(plan, {}), options.intercept);
    std::ostringstream out;
    const host::TextList& labels = made.model.dictionary.labels;
    for (std::size_t i = 0; i < labels.size(); ++i) out << labels[i] << '\n';
    for (const std::int32_t label : made.model.row_names.label) {
      out << label << ' ';
    }
    for (const double value : made.model.rhs) {
      out << value << ' ';
    }
    for (const host::Column& column : made.model.columns) {
      fuzz::Check(column.rows->size() == column.values.size(), "one value per row number");
      for (const double value : column.values) {
        out << value << ' ';
      }
    }
    return out.str();
  } catch (const host::InputError& error) {
    fuzz::Check(std::string_view(error.what()).find('\n') == std::string_view::npos, "one line");
    return error.what();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  const unsigned choice = input.Byte();
  host::TableOptions options;
  options.response = "y";
  options.separator = (choice & 1U) != 0 ? '\t' : ',';
  if ((choice & 2U) != 0) {
    options.labels = {"k"};
  }
  if ((choice & 4U) != 0) {
    options.factors = {"f"};
  }
  if ((choice & 8U) != 0) {
    options.drop = {"d"};
  }
  const std::string text(input.Rest());
  const std::string whole = Outcome(text, options, 0, 1);
  fuzz::Check(Outcome(text, options, 1 + (choice >> 4U) * 5, 2) == whole, "blocks change nothing");
  return 0;
}
