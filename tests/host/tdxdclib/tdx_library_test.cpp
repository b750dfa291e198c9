// The results-file library, through its exported functions; the files are read back with SQLite.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <random>
#include <set>

#include "base/database.h"
#include "tests/host/tdxdclib/tdx_session.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using testing_support::RunProgram;
using testing_support::TemporaryDirectory;
using testing_support::Utf8;
using Texts = std::vector<std::string>;

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// The rows of a query as SQLite's text of each column, joined by "|".
Texts Query(const fs::path& file, const std::string& sql, int columns) {
  Database database(file, Database::Mode::kRead);
  Statement statement(database, sql);
  Texts rows;
  while (statement.Step()) {
    std::string row;
    for (int k = 0; k < columns; ++k) {
      if (k > 0) row += '|';
      row += statement.IsNull(k) ? "null" : std::string(statement.Text(k));
    }
    rows.push_back(row);
  }
  return rows;
}

std::set<std::string> Files(const fs::path& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) {
    names.insert(Utf8(entry.path().filename()));
  }
  return names;
}

// The bytes of a results file that is there already.
std::string WriteSmallFile(const fs::path& file) {
  TdxSession session;
  session.Open(file);
  session.Symbol("df", 0, {{{}, 3.0}});
  EXPECT_TRUE(session.Close()) << session.LastError();
  return testing_support::ReadFile(file);
}

TEST(TdxLibrary, WhatIsWrittenIsReadBack) {
  const TemporaryDirectory directory("ü b");
  const fs::path file = directory / "lin fit.tdx";
  TdxSession session;
  ASSERT_TRUE(session.Open(file)) << session.LastError();
  EXPECT_TRUE(session.Symbol("df", 0, {{{}, 3.0}}, "Degrees of freedom"));
  EXPECT_TRUE(session.Symbol("estimate", 2,
                             {{{"a\"b'c, d", "Zürich"}, 0.1},
                              {{"a\"b'c, d", ""}, kNaN},
                              {{"日本", "x"}, kInf},
                              {{"日本", "y"}, -kInf},
                              {{std::string(63, 'z'), "x"}, 5e-324}}));
  EXPECT_TRUE(session.Symbol("empty", 20, {}));
  EXPECT_TRUE(session.Symbol("tdx_label", 1, {{{"x"}, 1.0}}));
  EXPECT_TRUE(session.Symbol("sqlite_x", 1, {{{"x"}, 2.0}}));
  EXPECT_TRUE(session.Symbol("select \"1\"; --", 1, {{{"x"}, 3.0}}));
  EXPECT_FALSE(fs::exists(file));
  ASSERT_TRUE(session.Close()) << session.LastError();
  EXPECT_EQ(Files(directory.Path()), std::set<std::string>{"lin fit.tdx"});

  EXPECT_EQ(Query(file, "select * from df", 1), Texts{"3.0"});
  EXPECT_EQ(Query(file,
                  "select dim1, dim2, typeof(value), value > 1e308, value < -1e308 "
                  "from estimate",
                  5),
            (Texts{"a\"b'c, d|Zürich|real|0|0", "a\"b'c, d||null|null|null", "日本|x|real|1|0",
                   "日本|y|real|0|1", std::string(63, 'z') + "|x|real|0|0"}));
  EXPECT_EQ(Query(file, "select count(*) from estimate where value = 5e-324", 1), Texts{"1"});
  EXPECT_EQ(Query(file, "select * from empty", 21), Texts{});
  EXPECT_EQ(Query(file, "select * from symbol_tdx_label", 2), Texts{"x|1.0"});
  EXPECT_EQ(Query(file, "select * from symbol_sqlite_x", 2), Texts{"x|2.0"});
  EXPECT_EQ(Query(file, "select * from \"select \"\"1\"\"; --\"", 2), Texts{"x|3.0"});
  EXPECT_EQ(
      Query(file, "select number, name, text, dimension, type, records from tdx_symbol", 6)[0],
      "1|df|Degrees of freedom|0|1|1");
  EXPECT_EQ(Query(file,
                  "select schema_version, producer from tdx_file "
                  "where created glob '2*-*-*T*:*:*Z' and library_version like 'tdx%'",
                  2),
            Texts{"1|linfit"});
  EXPECT_EQ(Query(file, "pragma application_id", 1), Texts{std::to_string(0x54445846)});
  EXPECT_EQ(Query(file, "pragma integrity_check", 1), Texts{"ok"});
}

const std::string kLongText(64, 'l');

struct ErrorCase {
  const char* name;
  const char* text;
  std::function<void(TdxSession&)> calls;
};
std::ostream& operator<<(std::ostream& out, const ErrorCase& c) {
  return out << c.name;
}

class TdxLibraryError : public testing::TestWithParam<ErrorCase> {};

// Every number of the calls is good on its own; together they are not.
TEST_P(TdxLibraryError, HasATextAndKeepsTheFileBack) {
  const TemporaryDirectory directory;
  const fs::path file = directory / "linfit.tdx";
  const std::string earlier = WriteSmallFile(file);
  TdxSession session;
  for (int run = 0; run < 2; ++run) {  // the second one starts without the errors of the first
    ASSERT_TRUE(session.Open(file)) << session.LastError();
    EXPECT_EQ(session.ErrorCount(), 0);
    GetParam().calls(session);
    EXPECT_EQ(session.ErrorCount(), 1);
    EXPECT_NE(session.LastError().find(GetParam().text), std::string::npos) << session.LastError();
    EXPECT_FALSE(session.Close());
    EXPECT_EQ(testing_support::ReadFile(file), earlier);
    EXPECT_EQ(Files(directory.Path()).size(), 1U);
  }
}

INSTANTIATE_TEST_SUITE_P(
    , TdxLibraryError,
    testing::ValuesIn(std::vector<ErrorCase>{
        {"TwiceInOneDimension", "symbol \"a\": duplicate key (\"x\")",
         [](TdxSession& s) {
           s.Symbol("a", 1, {{{"x"}, 1}, {{"y"}, 2}, {{"x"}, 1}});
         }},
        {"TwiceInARow", "symbol \"a\": duplicate key (\"x\",\"y\")",
         [](TdxSession& s) {
           s.Symbol("a", 2, {{{"x", "y"}, 1}, {{"x", "y"}, 1}});
         }},
        {"TwiceOutOfOrder", "symbol \"a\": duplicate key (\"y\",\"x\")",
         [](TdxSession& s) {
           s.Symbol("a", 2, {{{"x", "y"}, 1}, {{"y", "x"}, 2}, {{"x", "x"}, 3}, {{"y", "x"}, 4}});
         }},
        {"TwiceAScalar", "symbol \"a\": a second value of a scalar",
         [](TdxSession& s) {
           s.Symbol("a", 0, {{{}, 1}, {{}, 2}});
         }},
        {"LongLabel", "symbol \"a\": a label is longer than 63 bytes: \"llll",
         [](TdxSession& s) {
           s.Symbol("a", 1, {{{kLongText}, 1}});
         }},
        {"LongName", "the name is longer than 63 bytes",
         [](TdxSession& s) { s.Symbol(kLongText, 0, {}); }},
        {"NoName", "a symbol without a name", [](TdxSession& s) { s.Symbol("", 0, {}); }},
        {"NameTwice", "symbol \"A\": the file has a symbol of this name already",
         [](TdxSession& s) {
           s.Symbol("a", 0, {});
           s.Symbol("A", 0, {});
         }},
        // The records behind the refused start don't hide it.
        {"DimensionTooLarge", "symbol \"a\": dimension 21 is not between 0 and 20",
         [](TdxSession& s) {
           s.Symbol("a", 21, {{{}, 1}});
         }},
        {"DimensionNegative", "symbol \"a\": dimension -1 is not",
         [](TdxSession& s) { s.Symbol("a", -1, {}); }},
        {"OtherType", "symbol \"a\": type 2 is not supported",
         [](TdxSession& s) { s.Start("a", 1, "", 2); }},
        {"RecordAlone", "a record without a symbol", [](TdxSession& s) { s.Record({}, 1); }},
        {"EndAlone", "the end of a symbol that was not begun", [](TdxSession& s) { s.Done(); }},
        {"StartInside", "symbol \"b\": the symbol before it is not done",
         [](TdxSession& s) {
           s.Start("a", 1);
           s.Start("b", 1);
         }},
        {"OpenTwice", "a file is open already", [](TdxSession& s) { s.Open("other.tdx"); }},
    }),
    [](const auto& c) { return c.param.name; });

TEST(TdxLibrary, ASymbolWithoutItsEndIsNoticedAtTheClose) {
  const TemporaryDirectory directory;
  TdxSession session;
  ASSERT_TRUE(session.Open(directory / "linfit.tdx"));
  session.Start("a", 1);
  EXPECT_FALSE(session.Close());
  EXPECT_EQ(session.LastError(), "symbol \"a\" is not done");
  EXPECT_EQ(session.ErrorText(0), "no error");
  EXPECT_EQ(session.ErrorText(99), "there is no error 99");
}

TEST(TdxLibrary, TargetsThatCannotBeWritten) {
  const TemporaryDirectory directory;
  testing_support::WriteFile(directory / "file", "x,y\n1,2\n");
  fs::create_directory(directory / "taken.tdx");
  Database(directory / "table.db", Database::Mode::kCreate).Execute("create table tdx_file(x)");
  const std::set<std::string> files = Files(directory.Path());
  const std::pair<std::string, std::string> cases[] = {
      {"missing/linfit.tdx", ""},  // the system's own text
      {"file/linfit.tdx", ""},        {"taken.tdx", "not a regular file"},
      {"file", "not a results file"}, {"table.db", "not a results file"},
  };
  TdxSession session;
  for (const auto& [name, text] : cases) {
    const fs::path file = directory / name;
    EXPECT_FALSE(session.Open(file)) << name;
    EXPECT_EQ(session.open_error, 1) << name;
    EXPECT_TRUE(session.LastError().starts_with("cannot write " + Utf8(file) + ": "))
        << session.LastError();
    EXPECT_NE(session.LastError().find(text), std::string::npos) << session.LastError();
    EXPECT_FALSE(session.Close()) << name;
  }
  EXPECT_EQ(Files(directory.Path()), files);
  EXPECT_EQ(testing_support::ReadFile(directory / "file"), "x,y\n1,2\n");
}

TEST(TdxLibrary, WhatMayBeReplaced) {
  const TemporaryDirectory directory;
  testing_support::WriteFile(directory / "empty", "");
  WriteSmallFile(directory / "numbered");
  WriteSmallFile(directory / "unnumbered");  // known by its tables
  Database(directory / "unnumbered", Database::Mode::kReadWrite)
      .Execute("pragma application_id = 0");
  for (const char* name : {"empty", "numbered", "unnumbered"}) {
    TdxSession session;
    EXPECT_TRUE(session.Open(directory / name)) << session.LastError();
    session.Symbol("new", 0, {{{}, 1.0}});
    EXPECT_TRUE(session.Close()) << session.LastError();
    EXPECT_EQ(Query(directory / name, "select * from new", 1), Texts{"1.0"});
  }
  // A file that comes under the name while another is written.
  TdxSession session;
  ASSERT_TRUE(session.Open(directory / "late"));
  testing_support::WriteFile(directory / "late", "mine");
  EXPECT_FALSE(session.Close());
  EXPECT_EQ(testing_support::ReadFile(directory / "late"), "mine");
}

// An SQL program that dies while it writes leaves a journal or a log, which would be applied to
// whatever has the file's name.
TEST(TdxLibrary, WhatAnSqlProgramLeftIsNotAppliedToTheNextFile) {
  for (const char* mode : {"delete", "wal"}) {
    const TemporaryDirectory directory;
    const fs::path file = directory / "linfit.tdx";
    ASSERT_EQ(RunProgram(TDX_PROGRAM, {Utf8(file), "close", "4000"}).exit_code, 0);
    ASSERT_NE(RunProgram(TDX_PROGRAM, {Utf8(file), mode, "0"}).exit_code, 0);
    ASSERT_GT(Files(directory.Path()).size(), 1U) << mode;
    ASSERT_EQ(RunProgram(TDX_PROGRAM, {Utf8(file), "close", "3000"}).exit_code, 0);
    EXPECT_EQ(Files(directory.Path()), std::set<std::string>{"linfit.tdx"}) << mode;
    EXPECT_EQ(Query(file, "select count(*), sum(value) from resid", 2), Texts{"3000|4498500.0"});
    EXPECT_EQ(Query(file, "pragma integrity_check", 1), Texts{"ok"});
  }
}

// Keys in no order, against a set as the oracle; several batches long.
TEST(TdxLibrary, DuplicatesAmongManyRecords) {
  const TemporaryDirectory directory;
  std::mt19937 random(1);
  std::uniform_int_distribution<int> label(0, 299);
  TdxSession session;
  ASSERT_TRUE(session.Open(directory / "many.tdx"));
  session.Start("many", 2);
  std::set<std::pair<int, int>> seen;
  int duplicates = 0;
  for (int i = 0; i < 40000; ++i) {
    const std::pair<int, int> key{label(random), label(random)};
    const bool is_new = seen.insert(key).second;
    duplicates += is_new ? 0 : 1;
    ASSERT_EQ(session.Record({std::to_string(key.first), std::to_string(key.second)}, i), is_new);
  }
  EXPECT_GT(duplicates, 1000);
  EXPECT_EQ(session.ErrorCount(), duplicates);
}

TEST(TdxLibrary, ManyRecordsKeepTheirOrder) {
  const TemporaryDirectory directory;
  const fs::path file = directory / "many.tdx";
  TdxSession session;
  ASSERT_TRUE(session.Open(file));
  for (const char* name : {"resid", "fitted"}) {
    session.Start(name, 1);
    for (int i = 0; i < 30000; ++i) session.Record({std::to_string(i * 7919 % 30011)}, i);
    session.Done();
  }
  ASSERT_TRUE(session.Close()) << session.LastError();
  Database database(file, Database::Mode::kRead);
  for (const char* name : {"resid", "fitted"}) {
    Statement statement(database, std::string("select * from ") + name);
    for (int i = 0; i < 30000; ++i) {
      ASSERT_TRUE(statement.Step());
      ASSERT_EQ(statement.Text(0), std::to_string(i * 7919 % 30011));
      ASSERT_EQ(statement.Real(1), i);
    }
    EXPECT_FALSE(statement.Step());
  }
}

// A long run of ascending labels, which is searched, left and dissolved; strings are the oracle.
TEST(TdxLibrary, LabelsInAndOutOfOrder) {
  constexpr int kRecords = 20000;
  const TemporaryDirectory directory;
  const fs::path file = directory / "labels.tdx";
  std::vector<std::string> ascending;
  for (int i = 0; i < kRecords; ++i) ascending.push_back(std::to_string(i));
  std::vector<std::string> mixed = ascending;
  for (int i = 0; i < kRecords; i += 7)
    mixed[static_cast<std::size_t>(i)].insert(0, i % 2 == 0 ? "" : "0");
  std::ranges::shuffle(mixed, std::mt19937(1));
  TdxSession session;
  ASSERT_TRUE(session.Open(file));
  for (const auto& [name, labels] : {std::pair("a", &ascending), std::pair("b", &mixed)}) {
    session.Start(name, 1);
    for (const std::string& label : *labels) ASSERT_TRUE(session.Record({label}, 1.0));
    EXPECT_FALSE(session.Record({labels->front()}, 1.0));
    EXPECT_TRUE(session.Done());
  }
  EXPECT_EQ(session.ErrorCount(), 2);  // the two duplicates
  session.Close();

  ASSERT_TRUE(session.Open(file));
  for (const auto& [name, labels] : {std::pair("a", &ascending), std::pair("b", &mixed)}) {
    session.Start(name, 1);
    for (const std::string& label : *labels) session.Record({label}, 1.0);
    session.Done();
  }
  ASSERT_TRUE(session.Close()) << session.LastError();
  EXPECT_EQ(Query(file, "select dim1 from a", 1), ascending);
  EXPECT_EQ(Query(file, "select dim1 from b", 1), mixed);
  EXPECT_EQ(Query(file, "select label from tdx_label group by label having count(*) > 1", 1),
            Texts{});
}

TEST(TdxLibrary, ProcessesThatEndEarly) {
  const TemporaryDirectory directory;
  const fs::path file = directory / "linfit.tdx";
  const std::string earlier = WriteSmallFile(file);
  // The end of a process on Windows kills a thread in the middle of its work on the file, which
  // then can't always be removed: there, so few records that no other thread has begun.
#ifdef _WIN32
  const std::string records = "2000";
#else
  const std::string records = "20000";
#endif
  EXPECT_EQ(RunProgram(TDX_PROGRAM, {Utf8(file), "exit", records}).exit_code, 0);
  EXPECT_EQ(Files(directory.Path()), std::set<std::string>{"linfit.tdx"});
  EXPECT_NE(RunProgram(TDX_PROGRAM, {Utf8(file), "kill", "20000"}).exit_code, 0);
  EXPECT_EQ(testing_support::ReadFile(file), earlier);

  // What the killed one left goes when the next one comes; other files stay.
  ASSERT_EQ(Files(directory.Path()).size(), 2U);
  testing_support::WriteFile(directory / "linfit.tdx.tmp-mine", "");
  EXPECT_EQ(RunProgram(TDX_PROGRAM, {Utf8(file), "close", "2"}).out, "closed 0 no error\n");
  EXPECT_EQ(Files(directory.Path()), (std::set<std::string>{"linfit.tdx", "linfit.tdx.tmp-mine"}));
  EXPECT_EQ(Query(file, "select * from resid", 2), (Texts{"r0|0.0", "r1|1.0"}));
}

#ifndef _WIN32  // signals, permissions, and limits on the size of files, which the shell sets
TEST(TdxLibrary, SignalsLeaveNothing) {
  const TemporaryDirectory directory;
  const fs::path file = directory / "linfit.tdx";
  const std::string earlier = WriteSmallFile(file);
  for (const char* name : {"INT", "TERM", "HUP"}) {
    const auto run = RunProgram(TDX_PROGRAM, {Utf8(file), name, "20000"});
    EXPECT_GT(run.exit_code, 128) << name;
    EXPECT_EQ(Files(directory.Path()), std::set<std::string>{"linfit.tdx"}) << name;
    EXPECT_EQ(testing_support::ReadFile(file), earlier) << name;
  }
  // Ignored when the program started: so it stays.
  const auto run = RunProgram(
      "/bin/sh", {"-c", "trap '' HUP; exec \"$0\" \"$1\" HUP 2", TDX_PROGRAM, Utf8(file)});
  EXPECT_EQ(run.out, "closed 0 no error\n");
}

TEST(TdxLibrary, PermissionsStay) {
  const TemporaryDirectory directory;
  const fs::path file = directory / "linfit.tdx";
  WriteSmallFile(file);
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  WriteSmallFile(file);
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

// 512 blocks of 512 bytes (some shells: of 1024) fill up while records are written, or at the
// close.
TEST(TdxLibrary, FullDisk) {
  const TemporaryDirectory directory;
  const fs::path file = directory / "linfit.tdx";
  const std::string earlier = WriteSmallFile(file);
  for (const char* count : {"20000", "2000000"}) {
    const auto run = RunProgram(
        "/bin/sh",
        {"-c", "trap '' XFSZ; ulimit -f 512; exec \"$0\" \"$1\" close " + std::string(count),
         TDX_PROGRAM, Utf8(file)});
    EXPECT_TRUE(run.out.starts_with("failed 1 cannot write " + Utf8(file) + ": ")) << run.out;
    EXPECT_NE(run.out.find("File too large"), std::string::npos) << run.out;
    EXPECT_EQ(testing_support::ReadFile(file), earlier);
    EXPECT_EQ(Files(directory.Path()), std::set<std::string>{"linfit.tdx"});
  }
}

// The records of a large symbol are inserted while the caller writes the next ones.
TEST(TdxLibrary, AFailureBehindTheCallersBackIsCounted) {
  const TemporaryDirectory directory;
  for (const char* blocks : {"20", "30000"}) {  // early in the symbol, and late
    const auto run = RunProgram("/bin/sh", {"-c",
                                            "trap '' XFSZ; ulimit -f " + std::string(blocks) +
                                                "; exec \"$0\" \"$1\" count 2000000",
                                            TDX_PROGRAM, Utf8(directory / "linfit.tdx")});
    EXPECT_TRUE(run.out.starts_with("1 failed 1 cannot write ")) << run.out;
    EXPECT_EQ(Files(directory.Path()), std::set<std::string>{});
  }
}
#endif

}  // namespace
}  // namespace host
