#include "tavolite/tables/read_table.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/database.h"
#include "base/input_error.h"
#include "instance/instance.h"
#include "instance/instance_reader.h"
#include "instance/names.h"
#include "tavolite/tables/text_table.h"
#include "tests/support/program.h"

namespace host {
namespace {

TableOptions Response(const std::string& response) {
  TableOptions options;
  options.response = response;
  return options;
}

// The model in a form that is easy to compare: "fit(1): y = 10; x = 1; z = 2", with the signs
// turned back and entries that are not stored left out.
std::vector<std::string> Rows(const Model& model) {
  std::vector<std::string> rows;
  for (std::size_t i = 0; i < model.rhs.size(); ++i) {
    std::ostringstream text;
    text << DisplayName(model.dictionary, model.row_names, i) << ": y=" << 0.0 - model.rhs[i];
    for (std::size_t j = 0; j < model.columns.size(); ++j) {
      const Column& column = model.columns[j];
      for (std::size_t k = 0; k < column.rows->size(); ++k) {
        if ((*column.rows)[k] == static_cast<std::int32_t>(i)) {
          text << ' ' << DisplayName(model.dictionary, model.column_names, j) << '='
               << 0.0 - column.values[k];
        }
      }
    }
    rows.push_back(text.str());
  }
  return rows;
}

SolveOptions Query(const std::filesystem::path& file, const char* query,
                   const TableOptions& table) {
  SolveOptions options{
      .input = file, .format = InputFormat::kSqlite, .table = table, .quiet = true};
  options.table.query = query;
  return options;
}

TableModel FromText(const std::string& text, const TableOptions& options, char separator = ',',
                    std::size_t block = 0, unsigned threads = 0) {
  std::istringstream stream(text);
  TextTable table({.stream = &stream,
                   .name = "t.csv",
                   .block = block,
                   .threads = threads,
                   .separator = separator});
  const TablePlan plan = MakeTablePlan(table.ReadHeader(), options);
  return MakeTableModel(plan, table.ReadRows(plan, {}), options.intercept);
}

std::string Failure(const std::string& text, const TableOptions& options, std::size_t block = 0) {
  try {
    FromText(text, options, ',', block, 2);
  } catch (const InputError& error) {
    return error.what();
  }
  return "no failure";
}

TEST(ReadTableTest, SignsNamesAndOptionFile) {
  const TableModel made =
      FromText("\xEF\xBB\xBFy,x,z\r\n10,1,2\r\n-20,0,3.5\r\n30,4,-5", Response("y"));
  const std::vector<std::string> expected{"fit(1): y=10 x=1 z=2", "fit(2): y=-20 x=0 z=3.5",
                                          "fit(3): y=30 x=4 z=-5", "objective: y=0 rss=-1"};
  EXPECT_EQ(Rows(made.model), expected);
  EXPECT_EQ(made.model.row_types[0], RowType::kEqual);
  EXPECT_EQ(made.model.row_types[3], RowType::kFree);
  EXPECT_EQ(made.model.objective_row, 3);
  EXPECT_EQ(made.model.columns[0].values, std::vector<double>{1.0});
  EXPECT_TRUE(made.notes.empty());
}

TEST(ReadTableTest, RowsWithMissingValuesAreLeftOutAndCounted) {
  TableOptions options = Response("y");
  options.drop = {"unused"};
  const TableModel made = FromText(
      "y,x,unused\n1,1,NA\n2,,0\n3,nan,0\n4,2,\n\nNA,5,0\n6,7,inf\n,,\n8,8,text\n", options);
  const std::vector<std::string> expected{"fit(1): y=1 x=1", "fit(4): y=4 x=2", "fit(6): y=6 x=7",
                                          "fit(8): y=8 x=8", "objective: y=0 rss=-1"};
  EXPECT_EQ(Rows(made.model), expected);
  ASSERT_EQ(made.notes.size(), 1U);
  EXPECT_EQ(made.notes[0],
            "4 of 8 rows have missing values and are left out, the first of them in line 3");
}

TEST(ReadTableTest, LabelsKeyTheRows) {
  TableOptions options = Response("y");
  options.labels = {"land,year"};
  const std::string text = "land,year,y,x\n\"A \"\"1\"\"\nB\",2001,1,2\n";
  EXPECT_EQ(Failure(text, options),
            "t.csv:2: column \"land\": \"A \"1\"\\x0aB\" has a control character");
  const TableModel made = FromText(
      "land,year,y,x\n\"a,\"\"b\"\"  "
      "\",2001,1,2\nNA,2001,3,5\n\"a,\"\"b\"\"\",2002,4,6\n,2002,5,6\n",
      options);
  EXPECT_EQ(Rows(made.model)[0], R"(fit('a,"b"',2001): y=1 x=2)");
  EXPECT_EQ(Rows(made.model)[1], "fit(NA,2001): y=3 x=5");
  EXPECT_EQ(Rows(made.model)[2], R"(fit('a,"b"',2002): y=4 x=6)");
  EXPECT_EQ(made.notes.size(), 1U);  // the empty label
  EXPECT_EQ(Failure("land,year,y,x\nA,1,1,2\n\nB,1,2,3\nA,2,3,4\nA ,1,3,5\n", options),
            "t.csv:6: the label \"A,1\" is the same as at t.csv:2 (--label takes several columns, "
            "or none for the row's number)");
  options.regressors = {"x", "year"};  // a label may be a regressor too
  EXPECT_EQ(Rows(FromText("land,year,y,x\nA,1,1,2\nB,1,2,3\nC,2,2,3\n", options).model)[2],
            "fit(C,2): y=2 x=3 year=2");
}

TEST(ReadTableTest, FactorsGiveOneColumnPerLevelButTheFirst) {
  TableOptions options = Response("y");
  options.factors = {"f", "n"};
  const TableModel made = FromText(
      "y,f,x,n\n1,b,1,10\n2,\"NA\",2,9\n3,a,3,9\n4,NA,4,9\n5,b,5,100\n6,a,7,9\n7,b,8,9\n", options);
  EXPECT_EQ(Rows(made.model)[0], "fit(1): y=1 f=b=1 x=1 n=10=1");
  EXPECT_EQ(Rows(made.model)[1], "fit(2): y=2 x=2");
  EXPECT_EQ(Rows(made.model)[2], "fit(3): y=3 f=a=1 x=3");
  EXPECT_EQ(Rows(made.model)[3], "fit(5): y=5 f=b=1 x=5 n=100=1");
  EXPECT_EQ(made.notes[1], "factor f: 3 levels, measured against NA");
  EXPECT_EQ(made.notes[2], "factor n: 3 levels, measured against 9");
}

TEST(ReadTableTest, ChoiceOfColumnsAndIntercept) {
  const std::string text = "one,y,\"a,b\",c,\n1,1,2,3,x\n1,2,4,5,y\n1,3,7,5,z\n";
  TableOptions options = Response("y");
  TableModel made = FromText(text, options);
  EXPECT_EQ(Rows(made.model)[0], "fit(1): y=1 one=1 a,b=2 c=3");
  EXPECT_EQ(made.notes[0], "column 5 has no name and is left out");
  options.regressors = {"c", "a,b"};
  made = FromText(text, options);
  EXPECT_EQ(Rows(made.model)[0], "fit(1): y=1 c=3 a,b=2");
  options = Response("y");
  options.factors = {"f", "g"};
  options.intercept = Intercept::kNever;
  made = FromText("y,f,g\n1,b,1\n2,a,2\n3,c,1\n4,a,2\n5,b,1\n", options);
  EXPECT_EQ(Rows(made.model)[1], "fit(2): y=2 f=a=1 g=2=1");
  EXPECT_EQ(made.notes[0], "factor f: 3 levels, each with a coefficient: there is no intercept");
  // A regressor may be named like a symbol of the model or like a row.
  made = FromText("y,2,rss\n1,2,4\n2,3,4\n3,3,5\n", Response("y"));
  EXPECT_EQ(Rows(made.model)[1], "fit(2): y=2 2=3 rss=4");
  EXPECT_EQ(made.model.dictionary.labels, (TextList{"1", "2", "3"}));
}

// Rows, numbers of lines and the first error are the same wherever the file is cut and whoever
// parses the pieces.
TEST(ReadTableTest, BlocksAndThreadsChangeNothing) {
  std::mt19937 random(3);
  std::string text = "y,x,\"na\nme\",f\n";
  for (int i = 0; i < 300; ++i) {
    text += std::to_string(random() % 1000) + (random() % 9 == 0 ? ",NA," : ",1.5,");
    text += random() % 2 == 0 ? "\"l\"\"" + std::to_string(i) + ",\"" : "l" + std::to_string(i);
    text += random() % 3 == 0 ? ",\"a\nb\"\r\n" : ",c\n\n";
  }
  TableOptions options = Response("y");
  options.labels = {"na\nme"};
  options.drop = {"f"};
  const TableModel whole = FromText(text, options);
  const std::vector<std::string> expected = Rows(whole.model);
  const std::string with_errors = text + "1,x,l,c\n2,y,m,c\n" + text.substr(text.find("f\n") + 2);
  const std::string failure = Failure(with_errors, options);
  EXPECT_NE(failure.find("\"x\" is not a number"), std::string::npos) << failure;
  for (const std::size_t block : {1U, 7U, 64U, 100U, 1000U}) {
    for (const unsigned threads : {1U, 2U, 4U}) {
      const TableModel cut = FromText(text, options, ',', block, threads);
      EXPECT_EQ(Rows(cut.model), expected) << block << " bytes, " << threads << " threads";
      EXPECT_EQ(cut.notes, whole.notes);
    }
    EXPECT_EQ(Failure(with_errors, options, block), failure);
  }
}

TEST(ReadTableTest, PackedFilesGiveTheSameAsText) {
  const testing_support::TemporaryDirectory directory;
  std::string text = "y,x\n";
  for (int i = 0; i < 20000; ++i)
    text += std::to_string(i * i % 101) + "," + std::to_string(i) + "\n";
  const gzFile packed = gzopen(testing_support::Utf8(directory / "t.csv.gz").c_str(), "wb");
  gzwrite(packed, text.data(), static_cast<unsigned>(text.size()));
  gzclose(packed);
  SolveOptions options{.input = directory / "t.csv.gz",
                       .format = InputFormat::kCsv,
                       .table = Response("y"),
                       .quiet = true};
  const TableModel made = ReadTable(options, directory / "t.db");
  const Model expected = FromText(text, Response("y")).model;
  EXPECT_EQ(made.model.name, "t");
  EXPECT_EQ(made.model.rhs, expected.rhs);
  // So long a table's matrix is in the instance before its end is read.
  EXPECT_TRUE(made.model.columns[1].values.empty());
  WriteInstance(made.model, directory / "t.db");
  InstanceReader reader(directory / "t.db");
  ColumnPiece piece;
  reader.ReadPiece(1, 0, piece);
  EXPECT_EQ(piece.values, expected.columns[1].values);
  std::filesystem::resize_file(options.input, std::filesystem::file_size(options.input) / 2);
  try {
    ReadTable(options, {});
    ADD_FAILURE() << "read";
  } catch (const InputError& error) {
    EXPECT_EQ(error.what(),
              testing_support::Utf8(options.input) + ": the packed file ends too early");
  }
}

TEST(ReadTableTest, QueriesGiveTheSameAsText) {
  const testing_support::TemporaryDirectory directory("d\xC3\xA4ten");
  const std::filesystem::path file = directory / "t.db";
  {
    Database database(file, Database::Mode::kCreate);
    database.Execute(
        "create table t (k text, y, x real, b blob);"
        "insert into t values ('a', 1, 2.5, null), ('b', '2', 3, null), ('c', null, 3, null),"
        " ('d', ' 4e0', 1, null), ('e', 5, 'NA', null), ('f', 9007199254740993, -1, null);"
        "create table bad (y, x); insert into bad values (1, 2), (2, 'two'), (3, x'00')");
  }
  TableOptions options = Response("y");
  options.labels = {"k"};
  const TableModel made =
      ReadTable(Query(file, "select k, y, x from t order by k desc;", options), {});
  const std::vector<std::string> expected{"fit(f): y=9.0072e+15 x=-1", "fit(d): y=4 x=1",
                                          "fit(b): y=2 x=3", "fit(a): y=1 x=2.5",
                                          "objective: y=0 rss=-1"};
  EXPECT_EQ(Rows(made.model), expected);
  EXPECT_EQ(made.notes.at(0),
            "2 of 6 rows have missing values and are left out, the first of them in row 2");

  const struct {
    const char* query;
    const char* failure;
  } cases[] = {
      {"select y, x from bad",
       ": row 2: column \"x\": \"two\" is not a number (text columns need --label, --factor or "
       "--drop; a missing value is an empty field or NA)"},
      {"select y, x from bad where y <> 2", ": row 2: column \"x\" holds a blob"},
      {"select y, y * 1e999 as x from bad", ": row 1: column \"x\": \"Inf\" is not finite"},
      {"select y, x from bad where 0", ": the table has no rows"},
      {"select y, x from none", ": no such table: none"},
      {"select y, x frm bad", ": near \"bad\": syntax error"},
      {"select y from bad", ": the query gives only one column"},
      {"select y, x from bad; select 1", ": --query holds more than one statement"},
      {"select y, y from bad", ": columns 1 and 2 have the same name \"y\""},
      {"delete from bad", ": the query gives no rows (it must be a SELECT)"},
      {"delete from bad returning y, x", ": attempt to write a readonly database"},
      {"attach 'new.db' as n", ": the query gives no rows (it must be a SELECT)"},
      {" ", ": the query gives no rows (it must be a SELECT)"},
  };
  for (const auto& c : cases) {
    try {
      ReadTable(Query(file, c.query, Response("y")), {});
      ADD_FAILURE() << c.query;
    } catch (const InputError& error) {
      EXPECT_EQ(error.what(), testing_support::Utf8(file) + c.failure) << c.query;
    }
  }
}

}  // namespace
}  // namespace host
