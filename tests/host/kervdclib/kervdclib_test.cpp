// The library loaded at run time and driven through its C entries.
#include <gtest/gtest.h>

#include <cmath>

#include "base/control_file.h"
#include "base/left_failure.h"
#include "base/short_string.h"
#include "binding/module.h"
#include "instance/array_file.h"
#include "instance/instance.h"
#include "kervdclib/exports.h"
#include "tests/host/instance/small_model.h"
#include "tests/support/program.h"

namespace {

using testing_support::ReadFile;

struct Short {
  Short() = default;
  explicit Short(std::string_view text) { host::ToShortString(text, buffer); }
  [[nodiscard]] std::string Text() const { return std::string(host::ShortStringText(buffer)); }
  char buffer[256] = {};
};

struct Entries {
  linfit::ModuleHandle module = linfit::LoadModule(KERVDCLIB);
  template <class Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(linfit::FindExport(module, name));
  }
  ~Entries() { linfit::UnloadModule(module); }
};

// Calls the entry `name` of the library under test.
#define CALL(name) (entries_.Find<decltype(::name)>(#name))

class Kervdclib : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_NE(entries_.module, nullptr) << linfit::ModuleFailure();
    host::WriteInstance(model_, control_.instance);
    CALL(tevXCreate)(&tev_);
    CALL(tmoXCreate)(&tmo_);
  }
  void TearDown() override {
    CALL(tmoXFree)(&tmo_);
    CALL(tevXFree)(&tev_);
    EXPECT_EQ(tmo_, nullptr);
    EXPECT_EQ(tev_, nullptr);
  }
  int Init() {
    host::WriteControlFile(control_, control_path_);
    return CALL(tevInitEnvironmentLegacy)(tev_, Short(testing_support::Utf8(control_path_)).buffer);
  }
  // Initializes, registers and loads with index base 1; the first failure's text.
  std::string Load() {
    Short message;
    if (Init() != 0) return "init";
    if (CALL(tmoRegisterEnvironment)(tmo_, tev_, message.buffer) != 0) return message.Text();
    if (CALL(tmoLoadDataLegacy)(tmo_, message.buffer) != 0) return message.Text();
    CALL(tmoIndexBaseSet)(tmo_, 1);
    return "";
  }

  Entries entries_;
  testing_support::TemporaryDirectory directory_{" ü"};
  host::Model model_ = testing_support::SmallModel();
  std::filesystem::path control_path_ = directory_ / "control.txt";
  host::ControlFile control_{directory_ / "m.db", directory_ / "status.txt", directory_ / "log.txt",
                             directory_.Path(),   directory_ / "linfit.opt", {}};
  void* tev_ = nullptr;
  void* tmo_ = nullptr;
};

TEST_F(Kervdclib, PrintsTheAuditLineWithoutMarkers) {
  void* pal = nullptr;
  CALL(palXCreate)(&pal);
  for (const auto& [given, printed] :
       {std::pair{"_TAVO_Least Squares  1_OVAT_", "Least Squares  1"},
        std::pair{"no markers", "no markers"}, std::pair{"", ""}}) {
    Short line;
    CALL(palSetAuditLine)(pal, Short(given).buffer);
    CALL(palGetAuditLine)(pal, line.buffer);
    EXPECT_EQ(line.Text(), printed);
  }
  CALL(palXFree)(&pal);
  EXPECT_EQ(pal, nullptr);
}

TEST_F(Kervdclib, WritesStatusFileAndLogLineByLine) {
  ASSERT_EQ(Init(), 0);
  CALL(tevLogStat)(tev_, Short("both").buffer);
  CALL(tevStatPChar)(tev_, "one, ");
  CALL(tevStatPChar)(tev_, "two, ");
  CALL(tevStat)(tev_, Short("three").buffer);
  CALL(tevStatPChar)(tev_, "cut off");
  CALL(tevStatC)(tev_, Short("a message").buffer);
  CALL(tevStatAudit)(tev_, Short("audit").buffer);
  CALL(tevLog)(tev_, Short("").buffer);
  // Whatever way the process ends now, the lines are there.
  EXPECT_EQ(ReadFile(control_.status_file), "both\none, two, three\ncut off\na message\naudit\n");
  EXPECT_EQ(ReadFile(control_.log), "both\n\n");
  CALL(tevStatCon)(tev_);
  CALL(tevStat)(tev_, Short("in a block").buffer);
  CALL(tevStatCoff)(tev_);
  EXPECT_TRUE(ReadFile(control_.status_file).ends_with("audit\nin a block\n"));
  Short value;
  CALL(tevGetStrOpt)(tev_, Short("NameSysDir").buffer, value.buffer);
  EXPECT_EQ(testing_support::FromUtf8(value.Text()), directory_.Path() / "");
  CALL(tevGetStrOpt)(tev_, Short("other").buffer, value.buffer);
  EXPECT_EQ(value.Text(), "");
  EXPECT_GE(CALL(tevTimeDiff)(tev_), 0.0);
}

TEST_F(Kervdclib, RefusesToStartAndSaysWhy) {
  testing::internal::CaptureStderr();
  EXPECT_NE(CALL(tevInitEnvironmentLegacy)(tev_, Short("").buffer), 0);
  EXPECT_NE(CALL(tevInitEnvironmentLegacy)(tev_, Short("no/such.txt").buffer), 0);
  control_.instance = directory_ / "none.db";
  EXPECT_NE(Init(), 0);
  control_.instance = directory_ / "m.db";
  control_.status_file = directory_ / "none" / "status.txt";
  EXPECT_NE(Init(), 0);
  const std::vector<std::string> lines =
      testing_support::Lines(testing::internal::GetCapturedStderr());
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_NE(lines[0].find("no control file"), std::string::npos) << lines[0];
  EXPECT_NE(lines[1].find("no/such.txt"), std::string::npos) << lines[1];
  EXPECT_NE(lines[2].find("none.db"), std::string::npos) << lines[2];
  EXPECT_NE(lines[3].find("status.txt"), std::string::npos) << lines[3];
  Short message;
  EXPECT_NE(CALL(tmoRegisterEnvironment)(tmo_, tev_, message.buffer), 0);
  EXPECT_EQ(message.Text(), "the environment is not initialized");
  EXPECT_NE(CALL(tmoLoadDataLegacy)(tmo_, message.buffer), 0);
  EXPECT_EQ(message.Text(), "no environment is registered");
}

TEST_F(Kervdclib, GivesTheModel) {
  ASSERT_EQ(Load(), "");
  CALL(tmoPinfSet)(tmo_, 3.0e300);
  CALL(tmoMinfSet)(tmo_, 4.0e300);
  EXPECT_EQ(CALL(tmoM)(tmo_), 4);
  EXPECT_EQ(CALL(tmoN)(tmo_), 3);
  EXPECT_EQ(CALL(tmoObjRow)(tmo_), 1);
  EXPECT_EQ(CALL(tmoObjVar)(tmo_), 1);
  EXPECT_EQ(CALL(tmoGetRhsOne)(tmo_, 3), -2.5);
  EXPECT_EQ(CALL(tmoGetEquTypeOne)(tmo_, 1), 3);
  EXPECT_EQ(CALL(tmoGetEquTypeOne)(tmo_, 2), 0);
  EXPECT_EQ(CALL(tmoGetVarLowerOne)(tmo_, 2), 4.0e300);
  EXPECT_EQ(CALL(tmoGetVarUpperOne)(tmo_, 2), 3.0e300);
  EXPECT_EQ(CALL(tmoGetVarUpperOne)(tmo_, 3), 7.0);
  EXPECT_EQ(CALL(tmoOptFile)(tmo_), 1);
  Short name;
  CALL(tmoNameOptFile)(tmo_, name.buffer);
  EXPECT_EQ(testing_support::FromUtf8(name.Text()), control_.option_file);
  // Outside of the model nothing is read.
  int counts[4];
  for (const int number : {-2147483647 - 1, 0, 5, 2147483647}) {
    EXPECT_EQ(CALL(tmoGetRhsOne)(tmo_, number), 0.0);
    EXPECT_EQ(CALL(tmoGetEquTypeOne)(tmo_, number), -1);
    EXPECT_NE(CALL(tmoGetColStat)(tmo_, number, counts, counts + 1, counts + 2, counts + 3), 0);
    EXPECT_NE(CALL(tmoSetSolutionEquRec)(tmo_, number, 0, 0, 0, 0), 0);
    EXPECT_NE(CALL(tmoSetSolutionVarRec)(tmo_, number, 0, 0, 0, 0), 0);
    void* cursor = nullptr;
    double value = 0.0;
    CALL(tmoGetColJacInfoOne)(tmo_, number, &cursor, &value, counts, counts + 1);
    EXPECT_TRUE(std::isnan(value));
    EXPECT_EQ(cursor, nullptr);
  }
}

TEST_F(Kervdclib, WalksColumnsInAnyOrder) {
  ASSERT_EQ(Load(), "");
  int count = 0;
  int quadratic = 0;
  int nonlinear = 0;
  int objective = 0;
  ASSERT_EQ(CALL(tmoGetColStat)(tmo_, 1, &count, &quadratic, &nonlinear, &objective), 0);
  EXPECT_EQ(objective, 1);
  ASSERT_EQ(CALL(tmoGetColStat)(tmo_, 3, &count, &quadratic, &nonlinear, &objective), 0);
  EXPECT_EQ(count, 3);
  EXPECT_EQ(objective, 0);
  // Two columns at once, then the last one again.
  void* cursors[] = {nullptr, nullptr};
  for (int turn = 0; turn < 4; ++turn) {
    for (const int column : {2, 3}) {
      const auto at = static_cast<std::size_t>(turn % 3);
      double value = 0.0;
      int row = 0;
      CALL(tmoGetColJacInfoOne)(tmo_, column, &cursors[column - 2], &value, &row, &nonlinear);
      EXPECT_EQ(value, model_.columns[static_cast<std::size_t>(column) - 1].values[at]);
      EXPECT_EQ(row, turn % 3 + 2);
      EXPECT_EQ(cursors[column - 2] == nullptr, turn == 2);
    }
  }
}

TEST_F(Kervdclib, GivesNamesAndTheirQuotes) {
  ASSERT_EQ(Load(), "");
  ASSERT_EQ(CALL(tmoDictionary)(tmo_), 1);
  void* dct = CALL(tmoDict)(tmo_);
  int symbol = -1;
  int labels[20];
  int dimension = -1;
  ASSERT_EQ(CALL(dctColUels)(dct, 2, &symbol, labels, &dimension), 0);
  EXPECT_EQ(dimension, 2);
  Short name;
  ASSERT_EQ(CALL(dctSymName)(dct, symbol, name.buffer), 0);
  EXPECT_EQ(name.Text(), "coeff");
  std::string quotes;
  for (std::size_t i = 0; i < model_.dictionary.labels.size(); ++i) {
    char quote = '?';
    ASSERT_EQ(CALL(dctUelLabel)(dct, static_cast<int>(i), &quote, name.buffer), 0);
    EXPECT_EQ(name.Text(), model_.dictionary.labels[i]);
    quotes += quote;
  }
  EXPECT_EQ(quotes, " \"' '") << "a, it's, with blank, 1970, Zürich";
  ASSERT_EQ(CALL(dctRowUels)(dct, 0, &symbol, labels, &dimension), 0);
  EXPECT_EQ(dimension, 0);
  char quote = '?';
  EXPECT_NE(CALL(dctUelLabel)(dct, 5, &quote, name.buffer), 0);
  EXPECT_NE(CALL(dctSymName)(dct, -1, name.buffer), 0);
  EXPECT_NE(CALL(dctRowUels)(dct, 4, &symbol, labels, &dimension), 0);
  // The model object's dictionary is not freed with its handle; one made alone has no names.
  CALL(dctXFree)(&dct);
  EXPECT_EQ(dct, nullptr);
  EXPECT_EQ(CALL(dctSymName)(CALL(tmoDict)(tmo_), 0, name.buffer), 0);
  CALL(dctXCreate)(&dct);
  EXPECT_NE(CALL(dctSymName)(dct, 0, name.buffer), 0);
  CALL(dctXFree)(&dct);
}

TEST_F(Kervdclib, StoresTheSolution) {
  control_.timing = directory_ / "timing.txt";
  ASSERT_EQ(Load(), "");
  CALL(tmoModelStatSet)(tmo_, 1);
  CALL(tmoSolveStatSet)(tmo_, 1);
  CALL(tmoSetHeadnTail)(tmo_, 5, 0.25);
  for (int row = 1; row <= 4; ++row) {
    ASSERT_EQ(CALL(tmoSetSolutionEquRec)(tmo_, row, row + 0.5, 0.0, 2, 0), 0);
  }
  ASSERT_EQ(CALL(tmoSetSolutionVarRec)(tmo_, 3, NAN, -INFINITY, 3, 0), 0);
  ASSERT_EQ(CALL(tmoUnloadSolutionLegacy)(tmo_), 0) << ReadFile(control_.log);
  const host::Solution solution = host::ReadSolution(control_.instance).value();
  EXPECT_EQ(solution.model_status, 1);
  EXPECT_EQ(solution.head_and_tail.at(5), 0.25);
  EXPECT_EQ(solution.rows.level, (std::vector<double>{1.5, 2.5, 3.5, 4.5}));
  EXPECT_TRUE(std::isnan(solution.columns.level[2]));
  EXPECT_EQ(solution.columns.marginal[2], -INFINITY);
  EXPECT_EQ(solution.columns.basis, (std::vector<std::int32_t>{0, 0, 3}));
  // In the other order than usual: the model object keeps what it needs.
  CALL(tevXFree)(&tev_);
  CALL(tmoXFree)(&tmo_);
  EXPECT_NE(ReadFile(control_.timing).find("\tload the instance\n"), std::string::npos);
}

TEST_F(Kervdclib, EndsItsFilesWithWhatAnotherLibraryFailedAt) {
  ASSERT_EQ(Init(), 0);
  CALL(tevStatPChar)(tev_, "a begun line");
  host::LeaveFailure("the disk is full");
  CALL(tevXFree)(&tev_);
  EXPECT_EQ(ReadFile(control_.status_file), "a begun line\n*** the disk is full\n");
  EXPECT_EQ(ReadFile(control_.log), "*** the disk is full\n");
}

using KervdclibDeathTest = Kervdclib;

#ifdef __linux__
TEST_F(KervdclibDeathTest, EndsTheProcessWhenAFileIsNotWhole) {
  control_.status_file = "/dev/full";
  const auto run = [&] {
    Init();
    CALL(tevStatPChar)(tev_, "a line");
    CALL(tevXFree)(&tev_);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(EXIT_FAILURE),
              "can't write /dev/full: No space left on device");
}

// A figure that can't be had ends the process: no results can follow. Windows lets nobody cut a
// file that is in use.
TEST_F(KervdclibDeathTest, EndsTheProcessWhenTheInstanceIsSpoiledMeanwhile) {
  ASSERT_EQ(Load(), "");
  CALL(tevStatCon)(tev_);
  CALL(tevStatPChar)(tev_, "a begun line");
  std::filesystem::resize_file(host::ArrayPath(control_.instance), 70);
  const auto read = [&] {
    void* cursor = nullptr;
    double value = 0.0;
    int row = 0;
    int nonlinear = 0;
    CALL(tmoGetColJacInfoOne)(tmo_, 2, &cursor, &value, &row, &nonlinear);
  };
  EXPECT_EXIT(read(), testing::ExitedWithCode(EXIT_FAILURE), "");
  for (const auto& file : {control_.log, control_.status_file}) {
    const std::vector<std::string> lines = testing_support::Lines(ReadFile(file));
    EXPECT_TRUE(lines.back().starts_with("*** ")) << lines.back();
    EXPECT_NE(lines.back().find("column 1: can't read "), std::string::npos) << lines.back();
  }
  EXPECT_FALSE(host::ReadSolution(control_.instance).has_value());
}
#endif

TEST_F(Kervdclib, LoadsModelsWithoutNamesAndRefusesDamage) {
  model_.dictionary = {};
  host::WriteInstance(model_, control_.instance);
  control_.option_file.clear();
  ASSERT_EQ(Load(), "");
  EXPECT_EQ(CALL(tmoDictionary)(tmo_), 0);
  EXPECT_EQ(CALL(tmoDict)(tmo_), nullptr);
  EXPECT_EQ(CALL(tmoOptFile)(tmo_), 0);
  TearDown();
  SetUp();
  testing_support::WriteFile(control_.instance, "no database at all, but long enough for a header");
  EXPECT_NE(Load().find("m.db"), std::string::npos);
}

}  // namespace
