// Results files from anybody: what is read of them, and what the host adds.
#include "tdx/tdx_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>

#include "base/temporary_file.h"
#include "tdx/tdx_reader.h"
#include "tdx/tdx_writer.h"
#include "tests/support/program.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using testing_support::TemporaryDirectory;

class TdxFile : public testing::Test {
 protected:
  TdxFile() {
    TdxWriter writer(file_, "linfit", "version");
    LabelTable labels;
    std::vector<TdxSymbolInfo> symbols{{.name = "resid", .text = "Residuals", .dimension = 1}};
    writer.StartSymbol(1, 1);
    for (int i = 0; i < 1000; ++i) {
      const std::int32_t key[] = {labels.Number("r" + std::to_string(i), i)};
      writer.AddRecord(key, i, labels);
    }
    symbols[0].records = 1000;
    writer.Finish(symbols, labels);
  }
  void Execute(const std::string& sql) {
    Database database(file_, Database::Mode::kReadWrite);
    sqlite3_db_config(database.Connection(), SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    database.Execute(sql);
  }
  // What the reader says about the whole file, without the file's name.
  std::string Fault() {
    try {
      TdxReader reader(file_);
      for (const TdxSymbolInfo& symbol : reader.Symbols()) (void)reader.Read(symbol);
      return "none";
    } catch (const FileError& error) {
      const std::string text = error.what();
      return text.substr(std::min(text.size(), testing_support::Utf8(file_).size() + 2));
    }
  }

#ifdef _WIN32
  TemporaryDirectory directory_{"ü %41#"};
#else
  TemporaryDirectory directory_{"ü %41?#"};
#endif
  fs::path file_ = directory_ / "linfit.tdx";
};

TEST_F(TdxFile, FactsOfTheRunAreAddedToItsOwnFileOnly) {
  EXPECT_EQ(TdxReader(file_).Header().run.model, "");
  EXPECT_FALSE(AddRunFacts(file_, CurrentProcessNumber() + 1, {"other", "z"}).IsOpen());
  Database written =
      AddRunFacts(file_, CurrentProcessNumber(),
                  {"longley.mod", std::string(300, 'y'), 12.5, {"one", "two"}, {"three"}});
  ASSERT_TRUE(written.IsOpen());
  const RunFacts facts = TdxReader(std::move(written)).Header().run;
  EXPECT_EQ(facts.model, "longley.mod");
  EXPECT_EQ(facts.response, std::string(255, 'y'));
  EXPECT_EQ(facts.condition_number, 12.5);
  EXPECT_EQ(facts.warnings, (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(facts.notes, std::vector<std::string>{"three"});
  EXPECT_EQ(std::distance(fs::directory_iterator(directory_.Path()), {}), 1);
  // A file of an earlier release has no place for them.
  Execute(
      "create table old as select schema_version, producer, library_version, created from tdx_file;"
      "drop table tdx_file; alter table old rename to tdx_file");
  EXPECT_FALSE(AddRunFacts(file_, CurrentProcessNumber(), {"longley.mod", "y"}).IsOpen());
  EXPECT_EQ(TdxReader(file_).Header().library_version, "version");
  EXPECT_EQ(Fault(), "none");
}

TEST_F(TdxFile, ReadingAFileInWalModeLeavesNothing) {
  Execute("pragma journal_mode = wal; update tdx_data_1 set value = 7 where record = 1");
  ASSERT_EQ(std::distance(fs::directory_iterator(directory_.Path()), {}), 1);
  TdxReader reader(file_);
  EXPECT_EQ(reader.Read(reader.Get("RESID"), 1).values.at(0), 7.0);
  EXPECT_EQ(std::distance(fs::directory_iterator(directory_.Path()), {}), 1);
}

TEST_F(TdxFile, ALogWithChangesIsRead) {
  Database writer(file_, Database::Mode::kReadWrite);
  writer.Execute("pragma journal_mode = wal; update tdx_data_1 set value = 7 where record = 1");
  TdxReader reader(file_);
  EXPECT_EQ(reader.Read(reader.Get("resid"), 1).values.at(0), 7.0);
}

struct Harm {
  const char* name;
  const char* sql;
  const char* fault;
};
class TdxFileHarm : public TdxFile, public testing::WithParamInterface<Harm> {};

TEST_P(TdxFileHarm, IsRefused) {
  Execute(GetParam().sql);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_NE(Fault().find(GetParam().fault), std::string::npos) << Fault();
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

constexpr const char* kEndless =
    "drop table tdx_data_1; create view tdx_data_1(record, label1, value) as"
    " with recursive n(i) as (select 1 union all select i + 1 from n) select i, 1, 2.0 from n";
INSTANTIATE_TEST_SUITE_P(
    , TdxFileHarm,
    testing::Values(
        Harm{"EndlessView", kEndless, "no table tdx_data_1"},
        Harm{"ViewSaidToBeATable",
             "drop table tdx_data_1; create view v(record, label1, value) as select 1, 1, 2.0;"
             "pragma writable_schema = on;"
             "update sqlite_schema set type = 'table', name = 'tdx_data_1' where name = 'v'",
             "malformed database schema (tdx_data_1)"},
        Harm{"ViewForTheSymbols",
             "alter table tdx_symbol rename to t; create view tdx_symbol as select * from t",
             "no table tdx_symbol"},
        Harm{"LabelMissing", "delete from tdx_label where number = 500", "a label of resid"},
        Harm{"RecordsMissing", "delete from tdx_data_1 where record > 10", "records of resid"},
        Harm{"SymbolMissing", "update tdx_symbol set number = 2", "a symbol is missing"},
        Harm{"Dimension", "update tdx_symbol set dimension = 4294967297", "dimension of resid"},
        Harm{"LongLabel", "update tdx_label set label = zeroblob(64) where number = 1",
             "a label of resid"},
        // A computed column is cheap to store and costs what it likes to read.
        Harm{"ComputedValues",
             "drop table tdx_data_1; create table tdx_data_1(record integer primary key,"
             " label1 as (length(hex(zeroblob(400000))) > 0), value as (1.0));"
             "with recursive n(i) as (select 1 union all select i + 1 from n limit 1000)"
             " insert into tdx_data_1(record) select i from n",
             "no table tdx_data_1"}),
    [](const auto& harm) { return std::string(harm.param.name); });

TEST(Database, ReadingEndsThatRunsBeyondTheFilesSize) {
  const TemporaryDirectory directory;
  Database(directory / "x.db", Database::Mode::kCreate).Execute("create table t(x)");
  Database database(directory / "x.db", Database::Mode::kRead);
  database.Distrust(1000);
  EXPECT_THROW(Statement(database,
                         "with recursive n(i) as (select 1 union all select i + 1 from n)"
                         " select max(i) from n")
                   .Step(),
               DatabaseError);
}

}  // namespace
}  // namespace host
