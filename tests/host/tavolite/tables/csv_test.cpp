// The parser of text tables by itself: what it takes for a record, and in which line it sees an
// error.
#include "tavolite/tables/csv.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace host {
namespace {

// One letter a column: n is a number, l a label, f a factor, - unused. Labels come before factors.
TablePlan PlanOf(const std::string& uses) {
  TablePlan plan;
  for (const char use : uses) plan.labels += use == 'l' ? 1 : 0;
  int label = 0;
  for (const char use : uses) {
    ColumnUse& column = plan.columns.emplace_back();
    column.name = "c" + std::to_string(plan.columns.size());
    if (use == 'n') column.number = plan.numbers++;
    if (use == 'l') column.text = label++;
    if (use == 'f') column.text = plan.labels + plan.factors++;
  }
  return plan;
}

// "place,line: numbers [texts]; " for each complete row, then "after N" lines, and the error if
// there is one.
std::string Parsed(const std::string& uses, const std::string& text, char separator) {
  const TablePlan plan = PlanOf(uses);
  RowBatch batch;
  ParseRecords(text, plan, separator, batch);
  std::ostringstream out;
  const auto texts = static_cast<std::size_t>(plan.Texts());
  for (std::size_t row = 0; row < batch.rows; ++row) {
    out << batch.row_of[row] << ',' << batch.line_of[row] << ':';
    for (int i = 0; i < plan.numbers; ++i) out << ' ' << batch.Number(i)[row];
    for (std::size_t i = 0; i < texts; ++i) out << " [" << batch.texts[row * texts + i] << ']';
    out << "; ";
  }
  out << "after " << batch.lines_read;
  if (!batch.error.empty()) out << ": " << batch.error;
  return out.str();
}

struct Records {
  const char* name;
  const char* uses;
  std::string text;
  const char* parsed;
  char separator = ',';
};

const Records kRecords[] = {
    {"Plain", "nn", "1,2\n3,4\n", "0,0: 1 2; 1,1: 3 4; after 2"},
    {"CarriageReturns", "nl", "1,a\r\n2,b\r\n", "0,0: 1 [a]; 1,1: 2 [b]; after 2"},
    {"BlanksAround", "nl", "  +1 ,  a b \t\n", "0,0: 1 [a b]; after 1"},
    {"BlankLines", "nn", "\n1,2\n \t\r\n\n3,4\n", "0,1: 1 2; 1,4: 3 4; after 5"},
    {"Quotes", "nl", "\"1\",\"a,\"\"b\"\"\"\n", "0,0: 1 [a,\"b\"]; after 1"},
    {"QuotedLineEnds", "-n", "\"a\n\nb\",1\n\"c\",2\n", "0,0: 1; 1,3: 2; after 4"},
    {"EmptyQuotes", "nl", "1,\"\"\n2,a\n", "1,1: 2 [a]; after 2"},
    {"Tabs", "nl", "1\t a \n\t\n", "0,0: 1 [a]; after 2", '\t'},
    {"TabSeparatesEmptyFields", "nn", "1\t2\n3\t\n", "0,0: 1 2; after 2", '\t'},
    {"Semicolons", "nn", "1;2\n", "0,0: 1 2; after 1", ';'},
    {"Missing", "nn", "1,\n2,NA\n3,nan\n,4\n5,6\n", "4,4: 5 6; after 5"},
    {"MissingTexts", "lf", "NA,a\na,NA\nb,\"NA\"\n,c\n", "0,0: [NA] [a]; 2,2: [b] [NA]; after 4"},
    {"UnusedIsAnything", "n-", "1,inf\n2,\"x\ny\"\n3,\n", "0,0: 1; 1,1: 2; 2,3: 3; after 4"},
    {"Short", "nn", "1,2\n\n3\n", "0,0: 1 2; after 2: 1 field where the header has 2"},
    {"Long", "nn", "1,2,3,\"4\n\"\n", "after 0: 4 fields where the header has 2"},
    {"Unclosed", "nn", "1,2\n3,\"4\n5,6\n",
     "0,0: 1 2; after 1: the quote that opens here is not closed"},
    {"QuoteWithin", "nn", "1,2\"3\"\n",
     "after 0: a quote inside a field that does not start with one"},
    {"TextBehindQuote", "nn", "1,\"2\" 3\n", "after 0: text behind the closing quote of a field"},
    {"NulExplainsMore", "nn", std::string("1,2\n3,\0004\n", 9),
     "0,0: 1 2; after 1: a NUL byte: this is not a text file"},
    {"NulInUnused", "n-", std::string("1,\"a\n\0\"\n", 8),
     "0,0: 1; after 1: a NUL byte: this is not a text file"},
    // The error is in the line where its field starts.
    {"NotANumber", "-n", "\"a\nb\",\"1\n2\"\n",
     "after 1: column \"c2\": \"1\\x0a2\" is not a number (text columns need --label, --factor or "
     "--drop; a missing value is an empty field or NA)"},
    {"TooLarge", "nn", "1,-1e999\n",
     "after 0: column \"c2\": \"-1e999\" is beyond the range of a double"},
    {"NotUtf8", "nl", "1,\xC3\n", "after 0: column \"c2\": \"\\xc3\" is not valid UTF-8"},
};

class CsvRecords : public testing::TestWithParam<Records> {};

TEST_P(CsvRecords, AreParsed) {
  EXPECT_EQ(Parsed(GetParam().uses, GetParam().text, GetParam().separator), GetParam().parsed);
}

INSTANTIATE_TEST_SUITE_P(Csv, CsvRecords, testing::ValuesIn(kRecords),
                         [](const auto& test) { return std::string(test.param.name); });

struct Header {
  const char* name;
  std::string text;
  const char* names;  // joined by bars; or the error behind an exclamation mark
  std::int64_t lines;
  const char* rest;
};

const Header kHeaders[] = {
    {"Plain", "y,x\n1,2\n", "y|x", 1, "1,2\n"},
    {"BehindBlankLines", "\n \r\ny,\"a\n\"\"b\"\"\" , c\r\nrest", "y|a\n\"b\"|c", 4, "rest"},
    {"NoRecord", "\n  \n", "", 2, "\n  \n"},
    {"Bad", "\n\"y\nx", "!the quote that opens here is not closed", 1, "\n\"y\nx"},
    {"NulByte", std::string("y,\"\n\0\"\n", 7), "!a NUL byte: this is not a text file", 1,
     "y,\"\n"},
};

class CsvHeader : public testing::TestWithParam<Header> {};

TEST_P(CsvHeader, IsTaken) {
  std::string_view text = GetParam().text;
  std::int64_t lines = 0;
  std::string error;
  std::string joined;
  for (const std::string& name : TakeHeader(text, ',', lines, error)) {
    joined += (joined.empty() ? "" : "|") + name;
  }
  EXPECT_EQ(error.empty() ? joined : "!" + error, GetParam().names);
  EXPECT_EQ(lines, GetParam().lines);
  EXPECT_TRUE(text.starts_with(GetParam().rest)) << text;
}

INSTANTIATE_TEST_SUITE_P(Csv, CsvHeader, testing::ValuesIn(kHeaders),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Csv, LastRecordEndIsBehindAnEvenNumberOfQuotes) {
  for (const auto& [text, end] : {std::pair<const char*, std::size_t>{"", 0},
                                  {"a,b", 0},
                                  {"a\nb\nc", 4},
                                  {"a\n\"b\n", 2},
                                  {"a\n\"b\n\"\nc", 7},
                                  {"\"a\"\"\n\"\"\"\n\"", 9}}) {
    EXPECT_EQ(LastRecordEnd(text), end) << text;
  }
}

}  // namespace
}  // namespace host
