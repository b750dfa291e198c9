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
  EXPECT_EQ(data.row_types, model.row_types);
  EXPECT_EQ(data.rhs, model.rhs);
  ASSERT_EQ(data.columns.size(), 3U);
  EXPECT_EQ(data.columns[1].lower, -host::kInfinity);
  EXPECT_EQ(data.columns[1].upper, host::kInfinity);
  EXPECT_EQ(data.columns[2].upper, 7.0);
  EXPECT_TRUE(data.columns[0].in_objective_row);
  EXPECT_FALSE(data.columns[1].in_objective_row);
  EXPECT_EQ(data.columns[1].pattern, data.columns[2].pattern) << "equal lists are stored once";
  host::ColumnEntries entries;
  for (const int column : {2, 0, 1}) {
    const auto j = static_cast<std::size_t>(column);
    reader.ReadColumn(column, entries);
    EXPECT_EQ(*entries.rows, *model.columns[j].rows);
    EXPECT_EQ(entries.values, model.columns[j].values);
  }
  ASSERT_EQ(data.labels.size(), model.dictionary.labels.size());
  for (std::size_t i = 0; i < data.labels.size(); ++i) {
    EXPECT_EQ(data.labels[i], model.dictionary.labels[i]);
  }
  EXPECT_EQ(data.symbols[3], "coeff");
  EXPECT_EQ(data.column_names.label, model.column_names.label);
  EXPECT_EQ(data.row_names.first, model.row_names.first);
}

// More labels than one block holds, in rows of their own.
TEST_F(Instance, HoldsManyLabels) {
  constexpr int kCount = 150'000;
  host::Model model = SmallModel();
  model.row_types.resize(kCount, host::RowType::kEqual);
  model.rhs.resize(kCount);
  for (int i = 4; i < kCount; ++i) {
    model.dictionary.labels.push_back("label" + std::to_string(i));
    testing_support::AddName(model.row_names, 1, {i + 1});
  }
  const host::InstanceReader reader(Written(model));
  const auto last = static_cast<std::size_t>(reader.Data().row_names.label.back());
  EXPECT_EQ(reader.Data().labels[last], "label149999");
  EXPECT_EQ(reader.Data().labels[65536], model.dictionary.labels[65536]);
}

TEST_F(Instance, RefusesInconsistentModels) {
  struct Case {
    void (*spoil)(host::Model&);
    const char* message;
  };
  const Case cases[] = {
      {[](host::Model& m) { m.rhs.pop_back(); }, "right-hand side per row"},
      {[](host::Model& m) { m.rhs[2] = NAN; }, "right-hand side is not finite"},
      {[](host::Model& m) { m.objective_row = 4; }, "objective row"},
      {[](host::Model& m) { m.objective_column = -1; }, "objective column"},
      {[](host::Model& m) { m.row_types[1] = static_cast<host::RowType>(9); }, "row type"},
      {[](host::Model& m) { m.columns[1].values.pop_back(); }, "column 1: not one value"},
      {[](host::Model& m) { m.columns[2].values[1] = INFINITY; }, "column 2: a value is not"},
      {[](host::Model& m) { m.columns[2].lower = NAN; }, "column 2: a bound"},
      {[](host::Model& m) {
         m.columns[2].rows =
             std::make_shared<const std::vector<std::int32_t>>(std::vector<std::int32_t>{1, 1, 2});
       },
       "column 2: row numbers are not ascending"},
      {[](host::Model& m) {
         m.columns[2].rows =
             std::make_shared<const std::vector<std::int32_t>>(std::vector<std::int32_t>{1, 2, 4});
       },
       "column 2: a row number"},
      {[](host::Model& m) { m.dictionary.labels[0] = std::string(64, 'x'); }, "longer than 63"},
      {[](host::Model& m) { m.dictionary.symbols[0].clear(); }, "has no text"},
      {[](host::Model& m) { m.row_names.label[0] = 5; }, "label number"},
      {[](host::Model& m) { m.column_names.symbol[0] = -1; }, "symbol number"},
      {[](host::Model& m) { m.column_names.first[1] = 3; }, "fewer than 0"},
  };
  for (const Case& c : cases) {
    host::Model model = SmallModel();
    c.spoil(model);
    const std::string text = FailureText([&] { host::WriteInstance(model, file_); });
    EXPECT_NE(text.find(c.message), std::string::npos) << c.message << " / " << text;
    EXPECT_FALSE(std::filesystem::exists(file_)) << c.message;
  }
}

TEST_F(Instance, RefusesDamagedFilesWithTheReason) {
  const std::pair<const char*, const char*> cases[] = {
      {"PRAGMA user_version = 2", "version 2"},
      {"PRAGMA application_id = 1", "not an instance"},
      {"DELETE FROM model", "no model"},
      {"UPDATE model SET row_count = 5", "\"row_type\" has the wrong size"},
      {"UPDATE model SET row_count = -1", "number of rows"},
      {"UPDATE model SET column_count = 2000000000", "number of columns"},
      {"UPDATE model SET column_count = 4", "number of columns"},
      {"UPDATE model SET objective_row = 4", "objective row"},
      {"DELETE FROM array WHERE name = 'row_rhs'", "\"row_rhs\" is missing"},
      {"UPDATE array SET type = 'int32' WHERE name = 'row_rhs'", "not of type float64"},
      {"UPDATE array SET data = zeroblob(3) WHERE name = 'row_label'", "wrong size"},
      {"UPDATE array SET data = x'00000000ffffffff' || substr(data, 9) WHERE name ="
       " 'row_first_label'",
       "names of rows: "},
      {"UPDATE array SET data = x'00000000000000000000000000000080' || substr(data, 17) WHERE name "
       "="
       " 'row_first_label'",
       "names of rows: "},
      {"UPDATE pattern SET data = x'010000000000000002000000' WHERE id = 1", "not ascending"},
      {"UPDATE pattern SET data = x'010000000200000004000000' WHERE id = 1", "a row number"},
      {"UPDATE pattern SET data = x'0100000002' WHERE id = 1", "cut short"},
      {"UPDATE pattern SET data = x'01000000' WHERE id = 1", "column 1: not one value"},
      {"UPDATE matrix_column SET data = x'000000000000f07f' WHERE id = 0", "a value is not finite"},
      {"UPDATE matrix_column SET pattern = 7 WHERE id = 0", "no such list"},
      {"UPDATE matrix_column SET lower = 'low' WHERE id = 1", "a bound is not a number"},
      {"UPDATE matrix_column SET id = 9 WHERE id = 1", "a column is missing"},
      {"UPDATE text_block SET sizes = x'ff' WHERE kind = 'label'", "cut short"},
      {"UPDATE text_block SET first = 1 WHERE kind = 'label'", "block of texts is missing"},
      {"DELETE FROM text_block WHERE kind = 'symbol'", "a symbol number"},
      {"DROP TABLE matrix_column", "no such table"},
  };
  for (const auto& [sql, message] : cases) {
    Written(SmallModel());
    host::Database(file_, host::Database::Mode::kReadWrite).Execute(sql);
    const std::string text = ReadFailure();
    EXPECT_NE(text.find(message), std::string::npos) << sql << " / " << text;
    EXPECT_TRUE(text.starts_with(testing_support::Utf8(file_))) << text;
  }
}

// Columns that are checked and read ahead by threads.
TEST_F(Instance, ReadsAndChecksLargeColumns) {
  constexpr std::int32_t kRows = 100'000;
  host::Model model;
  model.row_types.assign(kRows, host::RowType::kEqual);
  model.rhs.assign(kRows, 0.0);
  std::vector<std::int32_t> rows(kRows);
  std::iota(rows.begin(), rows.end(), 0);
  const auto all_rows = std::make_shared<const std::vector<std::int32_t>>(rows);
  for (int j = 0; j < 6; ++j) {
    model.columns.push_back({all_rows, std::vector<double>(kRows, j)});
    model.columns.back().values.back() = -j;
  }
  Written(model);
  {
    host::InstanceReader reader(file_);
    host::ColumnEntries entries;
    for (const int j : {0, 1, 2, 4, 5, 3, 4, 1}) {
      reader.ReadColumn(j, entries);
      EXPECT_EQ(*entries.rows, rows);
      EXPECT_EQ(entries.values, model.columns[static_cast<std::size_t>(j)].values);
    }
    // Now column 2 is being read ahead: what is released locks nothing.
    reader.ReleaseAhead();
    host::Database(file_, host::Database::Mode::kReadWrite)
        .Execute("UPDATE matrix_column SET data = x'00' WHERE id = 2");
    reader.ReadColumn(1, entries);
    const std::string text = FailureText([&] { reader.ReadColumn(2, entries); });
    EXPECT_NE(text.find("column 2: the file has changed"), std::string::npos) << text;
  }
  const auto size = std::filesystem::file_size(Written(model));
  host::Database(file_, host::Database::Mode::kReadWrite)
      .Execute(
          "UPDATE matrix_column SET data = CAST(substr(data, 1, 560000) || x'000000000000f07f'"
          " || substr(data, 560009) AS BLOB) WHERE id = 4");
  EXPECT_NE(ReadFailure().find("column 4: a value is not finite"), std::string::npos);
  Written(model);
  std::filesystem::resize_file(file_, size / 2);
  EXPECT_TRUE(ReadFailure().starts_with(testing_support::Utf8(file_))) << ReadFailure();
}

TEST_F(Instance, SurvivesArbitraryDamage) {
  const std::filesystem::path file = Written(SmallModel());
  const std::string whole = [&] {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }();
  const auto read = [&](const std::string& bytes) {
    testing_support::WriteFile(file, bytes);
    FailureText([&] {
      host::InstanceReader reader(file);
      host::ColumnEntries entries;
      for (int j = 0; j < static_cast<int>(reader.Data().columns.size()); ++j) {
        reader.ReadColumn(j, entries);
      }
      host::ReadSolution(file);
    });
  };
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same damage in every run
  for (int round = 0; round < 300; ++round) {
    std::string bytes = whole;
    for (int flip = 0; flip < 6; ++flip) {
      // Most bytes of a page are not used; content stands at its ends.
      const std::size_t page = random() % (bytes.size() / 65536) * 65536;
      const std::size_t offset = random() % 400;
      bytes[page + (random() % 2 == 0 ? offset : 65535 - offset)] = static_cast<char>(random());
    }
    read(bytes);
  }
  for (std::size_t size = 0; size < whole.size(); size += whole.size() / 23) {
    read(whole.substr(0, size));
  }
}

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
