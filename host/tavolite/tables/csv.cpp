#include "tavolite/tables/csv.h"

#include <algorithm>
#include <cstring>

#include "base/text.h"
#include "tavolite/tables/number.h"

namespace host {

namespace {

struct Field {
  std::string_view text;  // blanks and quotes around it taken off
  bool quoted = false;
  bool doubled_quotes = false;  // still to be made single
};

std::string WithoutDoubledQuotes(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    result += text[i];
    i += text[i] == '"' ? 1 : 0;
  }
  return result;
}

// Walks through records, field by field. All texts end with a line feed, which is the sentinel.
class Scanner {
 public:
  Scanner(std::string_view text, char separator)
      : p_(text.data()), end_(p_ + text.size()), separator_(separator) {}

  [[nodiscard]] bool AtEnd() const { return p_ == end_; }
  [[nodiscard]] const char* Position() const { return p_; }

  bool SkipBlankLine() {
    const char* q = SkipBlanks(p_);
    q += q[0] == '\r' && q + 1 != end_ && q[1] == '\n' ? 1 : 0;
    if (*q != '\n') {
      return false;
    }
    p_ = q + 1;
    ++lines;
    return true;
  }

  // True when a plain number is the next field; `*this` stands behind it then.
  bool TakeNumber(double& value) {
    const char* const q = ScanNumber(SkipBlanks(p_), end_, value);
    if (q == nullptr || !(*q == separator_ || *q == '\n' || *q == '\r')) {
      return false;
    }
    p_ = q;
    return true;
  }

  // False when `error` is set.
  bool TakeField(Field& field, std::string& error) {
    const char* const start = SkipBlanks(p_);
    if (*start == '"') {
      return TakeQuoted(start + 1, field, error);
    }
    const char* q = start;
    while (*q != separator_ && *q != '\n' && *q != '"') {
      ++q;
    }
    if (*q == '"') {
      error = "a quote inside a field that does not start with one";
      return false;
    }
    p_ = q;
    const char* last = q;
    last -= *q == '\n' && last != start && last[-1] == '\r' ? 1 : 0;
    while (last != start && IsBlank(last[-1])) {
      --last;
    }
    field = {.text = {start, static_cast<std::size_t>(last - start)}};
    return true;
  }

  bool TakeSeparator() {
    if (*p_ != separator_) {
      return false;
    }
    ++p_;
    return true;
  }

  bool TakeLineEnd() {
    const char* q = p_;
    q += q[0] == '\r' && q + 1 != end_ && q[1] == '\n' ? 1 : 0;
    if (*q != '\n') {
      return false;
    }
    p_ = q + 1;
    ++lines;
    return true;
  }

  std::int64_t lines = 0;  // ended so far

 private:
  [[nodiscard]] bool IsBlank(char c) const { return (c == ' ' || c == '\t') && c != separator_; }
  const char* SkipBlanks(const char* p) const {
    while (IsBlank(*p)) {
      ++p;
    }
    return p;
  }

  bool TakeQuoted(const char* start, Field& field, std::string& error) {
    field = {.text = {}, .quoted = true};
    const char* q = start;
    for (;;) {
      q = static_cast<const char*>(std::memchr(q, '"', static_cast<std::size_t>(end_ - q)));
      if (q == nullptr) {
        error = "the quote that opens here is not closed";
        return false;
      }
      if (q + 1 == end_ || q[1] != '"') {
        break;
      }
      field.doubled_quotes = true;
      q += 2;
    }
    field.text = {start, static_cast<std::size_t>(q - start)};
    const std::int64_t inner_lines = std::count(start, q, '\n');
    q = SkipBlanks(q + 1);
    if (*q != separator_ && *q != '\n' && !(*q == '\r' && q + 1 != end_ && q[1] == '\n')) {
      error = "text behind the closing quote of a field";
      return false;
    }
    lines += inner_lines;
    p_ = q;
    return true;
  }

  const char* p_;
  const char* end_;
  char separator_;
};

class RecordParser {
 public:
  RecordParser(std::string_view text, const TablePlan& plan, char separator, RowBatch& batch)
      : scanner_(text, separator), plan_(plan), batch_(batch), text_(text) {}

  void Run() {
    const char* const nul = static_cast<const char*>(std::memchr(text_.data(), '\0', text_.size()));
    while (!scanner_.AtEnd()) {
      if (scanner_.SkipBlankLine()) {
        continue;
      }
      const char* const start = scanner_.Position();
      const std::int64_t line = scanner_.lines;
      const bool good = Record();
      if (nul != nullptr && IsNulError(start, nul, good)) {
        scanner_.lines = line + std::count(start, nul, '\n');
        batch_.error = "a NUL byte: this is not a text file";
        break;
      }
      if (!good) {
        break;
      }
    }
    batch_.lines_read = scanner_.lines;
  }

 private:
  // A NUL byte within a good record or on the line where a bad one starts explains more than
  // anything else would.
  [[nodiscard]] bool IsNulError(const char* start, const char* nul, bool good) const {
    return good ? nul < scanner_.Position() : std::find(start, nul, '\n') == nul;
  }

  bool Record() {
    const std::int64_t line = scanner_.lines;
    const std::size_t row = batch_.rows;
    complete_ = true;
    const std::size_t columns = plan_.columns.size();
    for (std::size_t c = 0; c < columns; ++c) {
      const ColumnUse& use = plan_.columns[c];
      double value = 0.0;
      if (use.number >= 0 && use.text < 0 && scanner_.TakeNumber(value)) {
        batch_.Number(use.number)[row] = value;
      } else if (!AnyField(use)) {
        return false;
      }
      if (c + 1 < columns && !scanner_.TakeSeparator()) {
        return Ragged(c + 1);
      }
    }
    if (!scanner_.TakeLineEnd()) {
      return Ragged(columns);
    }
    batch_.EndRow(complete_, line);
    return true;
  }

  // A field that is more than a plain number, or not one.
  bool AnyField(const ColumnUse& use) {
    const std::int64_t line = scanner_.lines;
    Field field;
    if (!scanner_.TakeField(field, batch_.error)) {
      return false;
    }
    if (use.number < 0 && use.text < 0) {
      return true;
    }
    if (field.doubled_quotes) {
      field.text = batch_.Keep(WithoutDoubledQuotes(field.text));
    }
    if ((use.number < 0 || NumberField(use, field)) && (use.text < 0 || TextField(use, field))) {
      return true;
    }
    scanner_.lines = line;  // the error is where the field starts
    return false;
  }

  bool NumberField(const ColumnUse& use, const Field& field) {
    const ParsedNumber number = ParseNumber(field.text);
    if (number.kind == NumberKind::kMissing) {
      complete_ = false;
    } else if (number.kind != NumberKind::kNumber) {
      batch_.error = NumberFault(use, field.text, number.kind);
      return false;
    }
    batch_.Number(use.number)[batch_.rows] = number.value;
    return true;
  }

  bool TextField(const ColumnUse& use, const Field& field) {
    // Names in the results are padded with blanks: those at the end of a text don't count.
    const std::string_view text = StrippedEnd(field.text);
    if (text.empty() || (!plan_.IsLabel(use.text) && !field.quoted && text == "NA")) {
      complete_ = false;
      return true;
    }
    batch_.error = TextFault(use, text);
    batch_.SetText(use.text, text);
    return batch_.error.empty();
  }

  // The record ended before or goes on behind `fields` fields; the others are counted.
  bool Ragged(std::size_t fields) {
    const std::int64_t lines = scanner_.lines;
    Field ignored;
    while (scanner_.TakeSeparator() && scanner_.TakeField(ignored, batch_.error)) {
      ++fields;
    }
    scanner_.lines = lines;
    if (batch_.error.empty()) {
      batch_.error = Counted(fields, "field") + " where the header has " +
                     std::to_string(plan_.columns.size());
    }
    return false;
  }

  Scanner scanner_;
  const TablePlan& plan_;
  RowBatch& batch_;
  std::string_view text_;
  bool complete_ = true;
};

}  // namespace

std::vector<std::string> TakeHeader(std::string_view& text, char separator, std::int64_t& lines,
                                    std::string& error) {
  Scanner scanner(text, separator);
  std::vector<std::string> names;
  while (!scanner.AtEnd() && scanner.SkipBlankLine()) {
  }
  if (scanner.AtEnd()) {
    lines += scanner.lines;
    return names;
  }
  do {
    Field field;
    if (!scanner.TakeField(field, error)) {
      lines += scanner.lines;
      return names;
    }
    names.push_back(field.doubled_quotes ? WithoutDoubledQuotes(field.text)
                                         : std::string(field.text));
  } while (scanner.TakeSeparator());
  scanner.TakeLineEnd();
  const auto taken = static_cast<std::size_t>(scanner.Position() - text.data());
  if (const std::size_t nul = text.find('\0'); nul < taken) {
    lines += std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(nul), '\n');
    error = "a NUL byte: this is not a text file";
    return names;
  }
  lines += scanner.lines;
  text.remove_prefix(taken);
  return names;
}

void ParseRecords(std::string_view text, const TablePlan& plan, char separator, RowBatch& batch) {
  // A field takes a byte at least: its separator.
  batch.Start(plan, text.size() / plan.columns.size() + 1);
  RecordParser(text, plan, separator, batch).Run();
}

std::size_t LastRecordEnd(std::string_view text) {
  // Every quote opens or closes, also one of a doubled pair: a line feed ends a record when the
  // quotes before it are even in number. Looking back from the end, few bytes are seen twice.
  bool quoted = std::count(text.begin(), text.end(), '"') % 2 != 0;
  for (std::size_t i = text.size(); i > 0; --i) {
    const char c = text[i - 1];
    if (c == '\n' && !quoted) {
      return i;
    }
    quoted = quoted != (c == '"');
  }
  return 0;
}

}  // namespace host
