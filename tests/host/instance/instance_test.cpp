#include "instance/instance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <numeric>
#include <random>

#include "base/database.h"
#include "instance/instance_reader.h"
#include "tests/host/instance/small_model.h"
#include "tests/support/program.h"

namespace {

using testing_support::SmallModel;
using testing_support::TemporaryDirectory;

std::string FailureText(const std::function<void()>& step) {
  try {
    step();
  } catch (const host::FileError& error) {
    return error.what();
  }
  return "";
}

// All entries of a column, in the pieces that the reader makes of it.
template <class Take>
void ForEachEntry(host::InstanceReader& reader, std::int32_t column, Take take) {
  const auto j = static_cast<std::size_t>(column);
  const auto entries = static_cast<std::size_t>(reader.Data().columns.at(j).entries);
  host::ColumnPiece piece;
  for (std::size_t entry = 0; entry < entries; ++entry) {
    if (!piece.Holds(column, entry)) reader.ReadPiece(column, entry, piece);
    take(piece.Row(entry), piece.Value(entry));
  }
}

std::vector<std::int32_t> RowsOf(host::InstanceReader& reader, std::int32_t column) {
  std::vector<std::int32_t> rows;
  ForEachEntry(reader, column, [&](std::int32_t row, double) { rows.push_back(row); });
  return rows;
}

std::vector<double> ValuesOf(host::InstanceReader& reader, std::int32_t column) {
  std::vector<double> values;
  ForEachEntry(reader, column, [&](std::int32_t, double value) { values.push_back(value); });
  return values;
}

// Overwrites bytes of one of the arrays of `instance`, from its element `element` on.
void Overwrite(const std::filesystem::path& instance, const std::string& array, int element,
               const std::string& bytes) {
  host::Database database(instance, host::Database::Mode::kRead);
  host::Statement row(database, "SELECT offset, type FROM array WHERE name = '" + array + "'");
  ASSERT_TRUE(row.Step()) << array;
  const int size = row.Text(1) == "float64" ? 8 : row.Text(1) == "int32" ? 4 : 1;
  std::fstream file(host::ArrayPath(instance), std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(row.Int(0) + std::int64_t{element} * size);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

class Instance : public testing::Test {
 protected:
  std::filesystem::path Written(const host::Model& model) {
    host::WriteInstance(model, file_);
    return file_;
  }
  std::string ReadFailure() {
    return FailureText([this] { host::InstanceReader reader(file_); });
  }

  TemporaryDirectory directory_{" ü"};
  std::filesystem::path file_ = directory_ / "model ü.db";
};

TEST_F(Instance, GivesTheModelBack) {
  const host::Model model = SmallModel();
  host::InstanceReader reader(Written(model));
  const host::InstanceData& data = reader.Data();
  EXPECT_EQ(data.name, model.name);
  EXPECT_EQ(reader.Rows().types, model.row_types);
  EXPECT_EQ(reader.Rows().rhs, model.rhs);
  ASSERT_EQ(data.columns.size(), 3U);
  EXPECT_EQ(data.columns[1].lower, -host::kInfinity);
  EXPECT_EQ(data.columns[1].upper, host::kInfinity);
  EXPECT_EQ(data.columns[2].upper, 7.0);
  EXPECT_TRUE(data.columns[0].in_objective_row);
  EXPECT_FALSE(data.columns[1].in_objective_row);
  EXPECT_EQ(data.columns[1].pattern, data.columns[2].pattern) << "equal lists are stored once";
  for (const int column : {2, 0, 1}) {
    const auto j = static_cast<std::size_t>(column);
    EXPECT_EQ(RowsOf(reader, column), *model.columns[j].rows);
    EXPECT_EQ(ValuesOf(reader, column), model.columns[j].values);
  }
  ASSERT_EQ(data.dictionary.labels.size(), model.dictionary.labels.size());
  for (std::size_t i = 0; i < data.dictionary.labels.size(); ++i) {
    EXPECT_EQ(data.dictionary.labels[i], model.dictionary.labels[i]);
  }
  EXPECT_EQ(data.dictionary.symbols[3], "coeff");
  EXPECT_EQ(data.column_names.label, model.column_names.label);
  EXPECT_EQ(reader.Rows().names.first, model.row_names.first);
}

struct BadModel {
  const char* name;
  void (*spoil)(host::Model&);
  const char* message;
};

class InconsistentModel : public Instance, public testing::WithParamInterface<BadModel> {};

TEST_P(InconsistentModel, IsRefused) {
  host::Model model = SmallModel();
  GetParam().spoil(model);
  const std::string text = FailureText([&] { host::WriteInstance(model, file_); });
  EXPECT_NE(text.find(GetParam().message), std::string::npos) << text;
  EXPECT_FALSE(std::filesystem::exists(file_));
  EXPECT_FALSE(std::filesystem::exists(host::ArrayPath(file_)));
}

std::shared_ptr<const std::vector<std::int32_t>> List(std::vector<std::int32_t> rows) {
  return std::make_shared<const std::vector<std::int32_t>>(std::move(rows));
}

INSTANTIATE_TEST_SUITE_P(
    Models, InconsistentModel,
    testing::Values(
        BadModel{"FewRhs", [](host::Model& m) { m.rhs.pop_back(); }, "right-hand side per row"},
        BadModel{"UndefinedRhs", [](host::Model& m) { m.rhs[2] = NAN; },
                 "right-hand side is not finite"},
        BadModel{"ObjectiveRow", [](host::Model& m) { m.objective_row = 4; }, "objective row"},
        BadModel{"ObjectiveColumn", [](host::Model& m) { m.objective_column = -1; },
                 "objective column"},
        BadModel{"RowType", [](host::Model& m) { m.row_types[1] = static_cast<host::RowType>(9); },
                 "row type"},
        BadModel{"FewValues", [](host::Model& m) { m.columns[1].values.pop_back(); },
                 "column 1: not one value"},
        BadModel{"InfiniteValue", [](host::Model& m) { m.columns[2].values[1] = INFINITY; },
                 "column 2: a value is not"},
        BadModel{"UndefinedBound", [](host::Model& m) { m.columns[2].lower = NAN; },
                 "column 2: a bound"},
        BadModel{"RowTwice",
                 [](host::Model& m) {
                   m.columns[2].rows = List({1, 1, 2});
                 },
                 "column 2: row numbers are not ascending"},
        BadModel{"RowsBackwards",
                 [](host::Model& m) {
                   m.columns[2].rows = List({1, 3, 2});
                 },
                 "column 2: row numbers are not ascending"},
        BadModel{"NoSuchRow",
                 [](host::Model& m) {
                   m.columns[2].rows = List({1, 2, 4});
                 },
                 "column 2: a row number"},
        BadModel{"LongLabel", [](host::Model& m) { m.dictionary.labels = {std::string(64, 'x')}; },
                 "longer than 63"},
        BadModel{"EmptySymbol",
                 [](host::Model& m) {
                   m.dictionary.symbols = {"", "fit", "rss", "coeff"};
                 },
                 "has no text"},
        BadModel{"NoSuchLabel", [](host::Model& m) { m.row_names.label[0] = 5; }, "label number"},
        BadModel{"NoSuchSymbol", [](host::Model& m) { m.column_names.symbol[0] = -1; },
                 "symbol number"},
        BadModel{"LabelCount", [](host::Model& m) { m.column_names.first[1] = 3; },
                 "fewer than 0"}),
    [](const auto& test) { return test.param.name; });

struct Damage {
  const char* name;
  const char* sql;  // done to the database, or else the bytes overwrite an array
  const char* array;
  int element;
  std::string bytes;
  const char* message;
};

Damage Sql(const char* name, const char* sql, const char* message) {
  return {name, sql, nullptr, 0, {}, message};
}

Damage Bytes(const char* name, const char* array, int element, std::string bytes,
             const char* message) {
  return {name, nullptr, array, element, std::move(bytes), message};
}

class DamagedInstance : public Instance, public testing::WithParamInterface<Damage> {};

TEST_P(DamagedInstance, IsRefusedWithTheReason) {
  host::Model model = SmallModel();
  model.columns[2].rows = List({1, 3});
  model.columns[2].values = {-4.0, 0.5};
  Written(model);
  if (GetParam().sql != nullptr) {
    host::Database(file_, host::Database::Mode::kReadWrite).Execute(GetParam().sql);
  } else {
    Overwrite(file_, GetParam().array, GetParam().element, GetParam().bytes);
  }
  const std::string text = ReadFailure();
  EXPECT_NE(text.find(GetParam().message), std::string::npos) << text;
  EXPECT_TRUE(text.starts_with(testing_support::Utf8(file_))) << text;
}

const std::string kMinusOne = "\xFF\xFF\xFF\xFF";
const std::string kFive("\x05\0\0\0", 4);
const std::string kInfinite("\0\0\0\0\0\0\xF0\x7F", 8);

INSTANTIATE_TEST_SUITE_P(
    Files, DamagedInstance,
    testing::Values(
        Sql("Version", "PRAGMA user_version = 9", "version 9"),
        Sql("ApplicationId", "PRAGMA application_id = 1", "not an instance"),
        Sql("NoModel", "DELETE FROM model", "no model"),
        Sql("RowCount", "UPDATE model SET row_count = 5", "\"row_type\" has the wrong size"),
        Sql("NegativeRowCount", "UPDATE model SET row_count = -1", "number of rows"),
        Sql("ManyColumns", "UPDATE model SET column_count = 2000000000", "number of columns"),
        Sql("ColumnCount", "UPDATE model SET column_count = 4", "\"column_lower\" has the wrong"),
        Sql("ObjectiveRow", "UPDATE model SET objective_row = 4", "objective row"),
        Sql("Stamp", "UPDATE model SET array_stamp = array_stamp + 1", "another instance"),
        Sql("Size", "UPDATE model SET array_bytes = array_bytes + 1", "cut short"),
        Sql("NoArray", "DELETE FROM array WHERE name = 'row_rhs'", "\"row_rhs\" is missing"),
        Sql("ArrayType", "UPDATE array SET type = 'int32' WHERE name = 'row_rhs'",
            "not of type float64"),
        Sql("NegativeSize", "UPDATE array SET count = -1 WHERE name = 'label_size'", "wrong size"),
        Sql("LargeSize", "UPDATE array SET count = 1 << 60 WHERE name = 'row_label'",
            "beyond the end"),
        Sql("Offset", "UPDATE array SET offset = 1 << 62 WHERE name = 'value'", "beyond the end"),
        Sql("NegativeOffset", "UPDATE array SET offset = -8 WHERE name = 'value'",
            "beyond the end"),
        Sql("NoTable", "DROP TABLE array", "no such table"),
        Sql("NoSymbols", "UPDATE array SET count = 0 WHERE name LIKE 'symbol%'", "a symbol number"),
        Bytes("FirstLabel", "row_first_label", 1, kMinusOne, "names of rows: "),
        Bytes("FirstLabelOverflow", "row_first_label", 2, std::string("\0\0\0\x80", 4),
              "names of rows: "),
        Bytes("RowsNotAscending", "pattern_row", 1, std::string("\x01\0\0\0", 4), "not ascending"),
        Bytes("RowNumber", "pattern_row", 1, kFive, "a row number"),
        Bytes("FirstRow", "pattern_first_row", 1, kFive, "a row number"),
        Bytes("NoList", "pattern_first_row", 1, kMinusOne, "cut short"),
        Bytes("PatternSize", "pattern_size", 2, kFive, "cut short"),
        Bytes("NegativePatternSize", "pattern_size", 1, kMinusOne, "wrong size"),
        Bytes("ValueCount", "pattern_size", 1, std::string(4, '\0'),
              "column 1: not one value per row"),
        Bytes("Run", "run_place", 2, kFive, "a run of values is not among the values"),
        Bytes("NegativeRun", "run_size", 0, kMinusOne, "a run of values is not among the values"),
        Bytes("FirstRun", "column_first_run", 1, kFive, "do not fit the columns"),
        Bytes("Infinite", "value", 5, kInfinite, "column 2: a value is not finite"),
        Bytes("Pattern", "column_pattern", 0, kFive, "no such list"),
        Bytes("Bound", "column_lower", 1, std::string(8, '\xFF'), "a bound is not a number"),
        Bytes("TextSize", "label_size", 1, "\x01", "do not fit"),
        Bytes("NoText", "label_size", 1, std::string(1, '\0'), "no text or is too long"),
        Bytes("LongText", "symbol_size", 0, "\xC8", "no text or is too long"),
        Bytes("Label", "row_label", 0, kFive, "a label number")),
    [](const auto& test) { return test.param.name; });

// Rows and columns of several pieces, these checked by two threads.
TEST_F(Instance, ReadsAndChecksLargeArrays) {
  constexpr std::int32_t kRows = 200'000;
  host::Model model;
  model.row_types.assign(kRows, host::RowType::kEqual);
  model.dictionary = {{"s", "t"}, {"label"}};
  for (int i = 0; i < kRows; ++i) {
    model.rhs.push_back(i);
    model.row_names.symbol.push_back(i % 2);
    model.row_names.label.resize(model.row_names.label.size() + static_cast<std::size_t>(i % 3));
    model.row_names.first.push_back(static_cast<std::int32_t>(model.row_names.label.size()));
  }
  model.column_names.symbol.assign(6, 0);
  model.column_names.first.assign(7, 0);
  std::vector<std::int32_t> rows(kRows);
  std::iota(rows.begin(), rows.end(), 0);
  const auto all_rows = List(rows);
  rows.erase(rows.begin() + 70'000);
  const auto most_rows = List(rows);
  for (int j = 0; j < 6; ++j) {
    const auto list = j % 2 == 0 ? all_rows : most_rows;
    model.columns.push_back({list, std::vector<double>(list->size(), j)});
    model.columns.back().values.back() = -j;
  }
  Written(model);
  host::InstanceReader reader(file_);
  for (const int j : {5, 2, 3}) {
    EXPECT_EQ(RowsOf(reader, j), *model.columns[static_cast<std::size_t>(j)].rows);
    EXPECT_EQ(ValuesOf(reader, j), model.columns[static_cast<std::size_t>(j)].values);
  }
  for (const std::size_t row : {70'001U, 0U, 199'999U}) {
    if (!reader.Rows().Holds(row)) reader.ReadRows(row);
    const std::size_t i = row - reader.Rows().begin;
    const host::ElementNames& names = reader.Rows().names;
    EXPECT_EQ(reader.Rows().rhs[i], static_cast<double>(row));
    EXPECT_EQ(names.symbol[i], static_cast<std::int32_t>(row % 2));
    EXPECT_EQ(names.first[i + 1] - names.first[i], static_cast<std::int32_t>(row % 3));
  }
  // What is damaged behind the load is found when it is read.
  Overwrite(file_, "row_first_label", 70'002, kFive);
  EXPECT_EQ(FailureText([&] { reader.ReadRows(0); }), "");
  EXPECT_NE(FailureText([&] { reader.ReadRows(70'001); }).find("names of rows"), std::string::npos);
  EXPECT_FALSE(reader.Rows().Holds(70'001));
  const std::int32_t undamaged = model.row_names.first[70'002];
  Overwrite(file_, "row_first_label", 70'002,
            {reinterpret_cast<const char*>(&undamaged), sizeof undamaged});
  Overwrite(file_, "value", 2 * kRows + 99'999, kInfinite);
  EXPECT_EQ(FailureText([&] { ValuesOf(reader, 1); }), "");
  const std::string text = FailureText([&] { ValuesOf(reader, 2); });
  EXPECT_NE(text.find("column 2: the file has changed"), std::string::npos) << text;
  EXPECT_NE(ReadFailure().find("column 2: a value is not finite"), std::string::npos);
  const auto size = std::filesystem::file_size(host::ArrayPath(file_));
  std::filesystem::resize_file(host::ArrayPath(file_), size / 2);
  EXPECT_NE(FailureText([&] { ValuesOf(reader, 5); }), "");
  EXPECT_NE(ReadFailure().find("cut short"), std::string::npos) << ReadFailure();
}

TEST_F(Instance, SurvivesArbitraryDamage) {
  Written(SmallModel());
  const auto bytes_of = [](const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  };
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same damage in every run
  for (const std::filesystem::path& file : {file_, host::ArrayPath(file_)}) {
    const std::string whole = bytes_of(file);
    const auto read = [&](const std::string& bytes) {
      testing_support::WriteFile(file, bytes);
      FailureText([&] {
        host::InstanceReader reader(file_);
        const auto columns = static_cast<std::int32_t>(reader.Data().columns.size());
        for (int j = 0; j < columns; ++j) ValuesOf(reader, j);
        host::ReadSolution(file_);
      });
    };
    for (int round = 0; round < 300; ++round) {
      std::string bytes = whole;
      for (int flip = 0; flip < 6; ++flip)
        bytes[random() % bytes.size()] = static_cast<char>(random());
      read(bytes);
    }
    for (std::size_t size = 0; size < whole.size(); size += whole.size() / 23) {
      read(whole.substr(0, size));
    }
    testing_support::WriteFile(file, whole);
  }
}

#ifdef PYTHON
TEST_F(Instance, IsReadByTheDocumentedProgram) {
  const std::string page = testing_support::ReadFile(HOST_FILES_PAGE);
  const std::size_t begin = page.find("```python\n") + 10;
  testing_support::WriteFile(directory_ / "read.py",
                             page.substr(begin, page.find("```", begin) - begin));
  host::Model model = SmallModel();
  model.columns[2].rows = List({1, 3});
  model.value_file = std::make_shared<host::ValueFile>(directory_ / "model.db");
  for (const double value : {-4.0, 0.5}) {
    const std::int64_t place = model.value_file->Append({&value, 1});
    if (value < 0.0) model.value_file->Append(model.columns[1].values);  // between the two
    if (value < 0.0) model.columns[2].stored.emplace();
    model.columns[2].stored->runs.push_back({place, 1});
  }
  host::WriteInstance(model, directory_ / "model.db");
  const testing_support::ProgramResult result =
      testing_support::RunProgram(PYTHON, {"read.py"}, {directory_.Path(), {}});
  EXPECT_EQ(result.out,
            "rss [] {0: 1.0}\n"
            "coeff ['1970', 'a'] {1: -1.0, 2: -2.0, 3: -3.0}\n"
            "coeff ['Z\xC3\xBCrich', \"it's\"] {1: -4.0, 3: 0.5}\n");
}
#endif

TEST_F(Instance, GivesTheSolutionBack) {
  Written(SmallModel());
  EXPECT_FALSE(host::ReadSolution(file_).has_value());
  host::Solution solution;
  solution.model_status = 1;
  solution.solve_status = 1;
  solution.head_and_tail = {{3, 1.0}, {5, NAN}};
  solution.rows = {{1, 2, 3, INFINITY}, {0, 0, 0, NAN}, {2, 2, 2, 2}, {0, 0, 0, 0}};
  solution.columns = {{1, 2, 3}, {4, 5, 6}, {3, 3, 3}, {0, 0, 7}};
  host::WriteSolution(solution, file_);
  solution.columns.level[2] = -8.0;
  host::WriteSolution(solution, file_);  // the newer one counts
  const host::Solution read = host::ReadSolution(file_).value();
  EXPECT_EQ(read.solve_status, 1);
  EXPECT_EQ(read.head_and_tail.at(3), 1.0);
  EXPECT_TRUE(std::isnan(read.head_and_tail.at(5)));
  EXPECT_EQ(read.rows.level, solution.rows.level);
  EXPECT_TRUE(std::isnan(read.rows.marginal[3]));
  EXPECT_EQ(read.columns.level, solution.columns.level);
  EXPECT_EQ(read.columns.status, solution.columns.status);

  // A solution that does not fit changes nothing: the transaction is taken back.
  solution.model_status = 13;
  solution.columns.basis.pop_back();
  EXPECT_NE(FailureText([&] { host::WriteSolution(solution, file_); }), "");
  EXPECT_EQ(host::ReadSolution(file_).value().model_status, 1);
  EXPECT_NE(FailureText([&] { host::ReadSolution(directory_ / "none.db"); }), "");
}

}  // namespace
