#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "binding/dctmf9glu.h"
#include "binding/module.h"
#include "binding/optf9glu.h"
#include "binding/palmf9glu.h"
#include "binding/tdxf9glu.h"
#include "binding/tevmf9glu.h"
#include "binding/tmomf9glu.h"
#include "tests/doubles/scripted_run.h"
#include "tests/support/program.h"

namespace linfit {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// The scripted libraries stand beside this program.
class Loader : public testing::Test {
 protected:
  Loader() {
    testing_support::SetVariable("LINFIT_TEST_SCRIPT",
                                 testing_support::Utf8(directory_ / "script"));
    testing_support::SetVariable("LINFIT_TEST_TRACE", testing_support::Utf8(directory_ / "trace"));
    Script("");
  }
  ~Loader() override {  // a library that stays loaded is unloaded at the program's end
    testing_support::SetVariable("LINFIT_TEST_TRACE", "");
  }

  void Script(const std::string& text) {
    testing_support::WriteFile(directory_ / "script", text);
    testing_support::WriteFile(directory_ / "trace", "");
  }
  std::vector<std::string> Trace() {
    return testing_support::Lines(testing_support::ReadFile(directory_ / "trace"));
  }
  std::string Message() const { return {message_.data(), message_.size()}; }
  static std::string Padded(std::string text, std::size_t width = 300) {
    text.resize(width, ' ');
    return text;
  }
  static std::string Faulty(const std::string& fault) {
    return testing_support::Utf8(doubles::DoublesDirectory() / "faulty" / fault);
  }

  testing_support::TemporaryDirectory directory_{"loader"};
  std::array<char, 300> message_ = [] {
    std::array<char, 300> message;
    message.fill('#');
    return message;
  }();
  Handle handle_ = nullptr;
};

TEST_F(Loader, EachOfTheFourLibrariesInOneFileIsLoadedAndFreedOnItsOwn) {
  Script("trace loading\n");
  Pal pal;
  Tev tev;
  Tmo tmo;
  Dct dct;
  Handle audit, environment, model;
  ASSERT_TRUE(pal.palXCreate(audit, message_));
  EXPECT_EQ(Message(), Padded(""));
  ASSERT_TRUE(tev.tevXCreate(environment, message_));
  ASSERT_TRUE(tmo.tmoXCreate(model, message_));
  ASSERT_TRUE(dct.dctGetReady(message_));
  EXPECT_EQ(Message(), Padded(""));
  const std::vector<std::string> trace = Trace();
  for (const char* line : {"CpalXAPIVersion 1", "CtevXAPIVersion 6", "CtmoXAPIVersion 16",
                           "CdctXAPIVersion 2", "CtmoXCheck \"tmoGetColJacInfoOne\" 5 0 3 2 14 4 4",
                           "CpalXCheck \"palGetAuditLine\" 0 12"}) {
    EXPECT_THAT(trace, Contains(line));
  }
  EXPECT_EQ(std::count_if(trace.begin(), trace.end(),
                          [](const std::string& line) { return line.rfind("CtmoXCheck", 0) == 0; }),
            26);

  tmo.tmoXFree(model);
  EXPECT_EQ(model, nullptr);
  EXPECT_FALSE(tmo.LoadedFlag());
  EXPECT_TRUE(tev.LoadedFlag());
  tev.tevLog(environment, "still there");
  EXPECT_THAT(Trace(), Not(Contains("unload kervdclib64")));
  tev.tevXFree(environment);
  pal.palXFree(audit);
  EXPECT_TRUE(dct.LoadedFlag());
}

TEST_F(Loader, TheLastObjectTakesTheLibraryWithIt) {
  Script("trace loading\n");
  for (const bool locking : {false, true}) {
    Opt opt;
    opt.SetLocking(locking);
    Handle first, second;
    ASSERT_TRUE(opt.optCreate(first, message_));
    ASSERT_TRUE(opt.optCreate(second, message_));
    EXPECT_EQ(opt.ObjectCount(), 2);
    EXPECT_EQ(opt.optFree(first), 1);
    EXPECT_TRUE(opt.LoadedFlag());
    EXPECT_EQ(opt.optMessageCount(second), 0);
    opt.optFree(second);
    EXPECT_FALSE(opt.LoadedFlag());
    EXPECT_EQ(opt.ObjectCount(), 0);
    EXPECT_THAT(Trace(), Contains("unload tptdclib64"));

    ASSERT_TRUE(opt.optCreate(first, message_));
    EXPECT_EQ(opt.optGetIntStr(first, "MAXP  "), 25);
    opt.optFree(first);
  }
}

TEST_F(Loader, ARefusedVersionLeavesTheTextAndNoLibrary) {
  Script("CXAPIVersion = 0 \"library is too old\"\ntrace loading\n");
  Tdx tdx;
  EXPECT_FALSE(tdx.tdxCreate(handle_, message_));
  EXPECT_EQ(Message(), Padded("library is too old"));
  EXPECT_FALSE(tdx.LoadedFlag());
  EXPECT_EQ(tdx.ObjectCount(), 0);
  EXPECT_THAT(Trace(), ElementsAre("load tdxdclib64", "CXAPIVersion 7", "unload tdxdclib64"));
  Script("");
  EXPECT_TRUE(tdx.tdxCreate(handle_, message_));
  EXPECT_EQ(Message(), Padded(""));
}

TEST_F(Loader, ALibraryMayWriteMoreThanTheCallersFieldHolds) {
  for (const std::size_t width : {0U, 1U, 20U, 255U, 256U}) {
    Tdx tdx;
    EXPECT_FALSE(tdx.tdxGetReadyD(Faulty("long_refusal"), std::span(message_).first(width)));
    const std::size_t kept = width == 0 ? 0 : width - 1;
    EXPECT_EQ(Message(), std::string(kept, 'x') + std::string(width - kept, ' ') +
                             std::string(message_.size() - width, '#'));
    EXPECT_THAT(Trace(), Contains("unload"));
    Script("");
    message_.fill('#');
  }
}

TEST_F(Loader, AMissingSymbolIsReportedInTheFieldAndOnStandardOutput) {
  for (const auto& [fault, symbol] : std::vector<std::pair<std::string, std::string>>{
           {"no_create", "XCreate"}, {"no_free", "XFree"}, {"no_function", "tdxClose"}}) {
    Tdx tdx;
    Script("");
    const std::string text = "Could not load symbol '" + symbol + "': ";
    testing::internal::CaptureStdout();
    EXPECT_FALSE(tdx.tdxGetReadyD(Faulty(fault), message_));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), text + "\n");
    EXPECT_EQ(Message(), Padded(text));
    EXPECT_FALSE(tdx.LoadedFlag());
    EXPECT_THAT(Trace(), Contains("unload"));

    testing::internal::CaptureStdout();
    EXPECT_FALSE(tdx.tdxGetReadyD(Faulty(fault), std::span(message_).first(8)));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Could n\n");
    EXPECT_EQ(Message().substr(0, 9), "Could n t");
  }
}

TEST_F(Loader, ALibraryThatIsNotThereIsNamed) {
  const std::string file =
      Faulty("nowhere") + DirectorySeparator() + "tdxdclib64" + std::string(ModuleSuffix());
  Tdx tdx;
  EXPECT_FALSE(tdx.tdxGetReadyD(Faulty("nowhere") + "   ", message_));
  const std::string start = "Could not load shared library " + file + ": ";
  EXPECT_THAT(Message(), StartsWith(start));
  EXPECT_GT(Trimmed(message_).size(), start.size()) << "no description of the failure";
  EXPECT_FALSE(tdx.tdxGetReadyD(std::string(600, 'd'), message_));
  EXPECT_EQ(message_.back(), ' ');
}

TEST_F(Loader, EverySpellingIsFoundInItsOrder) {
  Tdx tdx;
  ASSERT_TRUE(tdx.tdxGetReadyD(Faulty("spellings"), message_)) << Message();
  ASSERT_TRUE(tdx.tdxCreate(handle_, message_));
  EXPECT_EQ(tdx.tdxClose(handle_), 1);
  EXPECT_EQ(tdx.tdxGetLastError(handle_), 2);
  EXPECT_EQ(tdx.tdxErrorCount(handle_), 3);
  EXPECT_EQ(tdx.tdxDataWriteDone(handle_), 4);
  EXPECT_EQ(tdx.tdxCurrentDim(handle_), 5);
  int error_number = 0;
  EXPECT_EQ(tdx.tdxOpenWrite(handle_, "", "", error_number), 6);
  tdx.tdxFree(handle_);
  EXPECT_FALSE(tdx.LoadedFlag());
}

TEST_F(Loader, ADirectoryIsHandedToTheLoadPathEntry) {
  const std::string plain = testing_support::Utf8(doubles::DoublesDirectory());
  for (const std::string& directory : {plain, plain + DirectorySeparator(), plain + "   "}) {
    Script("trace loading\n");
    Tdx tdx;
    Opt opt;
    ASSERT_TRUE(tdx.tdxGetReadyD(directory, message_)) << Message();
    ASSERT_TRUE(opt.optGetReadyD(directory, message_)) << Message();
    const std::vector<std::string> trace = Trace();
    EXPECT_EQ(std::count_if(
                  trace.begin(), trace.end(),
                  [](const std::string& line) { return line.find("SetLoadPath") != line.npos; }),
              2);
    EXPECT_TRUE(tdx.tdxCreate(handle_, message_));
    tdx.tdxFree(handle_);
    EXPECT_TRUE(opt.optCreate(handle_, message_));
    opt.optFree(handle_);
  }
  Script("trace loading\n");
  Tdx tdx;
  EXPECT_TRUE(tdx.tdxGetReady(message_));
  EXPECT_THAT(Trace(), Not(Contains(HasSubstr("SetLoadPath"))));
}

TEST_F(Loader, ALibraryThatMakesNoObject) {
  Script("tevXCreate = null\n");
  Tev tev;
  handle_ = &tev;
  EXPECT_FALSE(tev.tevXCreate(handle_, message_));
  EXPECT_EQ(Message(), Padded("Error while creating object"));
  EXPECT_EQ(handle_, nullptr);
  EXPECT_EQ(tev.ObjectCount(), 0);
  EXPECT_FALSE(tev.tevXCreate(handle_, std::span(message_).first(5)));
  EXPECT_EQ(Message().substr(0, 8), "Erro  wh")
      << "the last byte is the terminator's; what lies behind the field stays";
}

using LoaderDeathTest = Loader;

TEST_F(LoaderDeathTest, FreeingWithoutAFreeEntryFailsAnAssertion) {
  Tdx tdx;
  EXPECT_DEATH(tdx.tdxFree(handle_), "tdxf9glu: assertion failed: XFree");
  Tmo tmo;
  EXPECT_DEATH(tmo.tmoXFree(handle_), "tmomf9glu: assertion failed: tmoXFree");
}

// A call of a refused function, in a program of its own.
class MissingFunction : public testing::Test {
 protected:
  static testing_support::ProgramResult Run(const std::vector<std::string>& settings) {
    return doubles::RunScripted(
               doubles::DoublesDirectory() / CALL_MISSING,
               "refuse tmoGetRhsOne\nrefuse tmoNameOptFile\nrefuse tmoLoadDataLegacy\n", settings)
        .program;
  }
  static std::string Line(const std::string& function) {
    return "FIX ME in C glu: " + function + " could not be loaded or has wrong signature!\n";
  }
  const std::string answers_ = "result 0\nfile \"\"\nload 0\ntext \"\"\nerrors 3\n";
};

TEST_F(MissingFunction, EndsTheProcess) {
  for (const std::string locking : {"", "locking"}) {
    const auto run = Run({locking});
    EXPECT_EQ(run.exit_code, 123);
    EXPECT_EQ(run.out, Line("tmoGetRhsOne"));
    EXPECT_EQ(run.err, "");
  }
}

TEST_F(MissingFunction, DoesAsTheIndicatorsSay) {
  auto run = Run({"no-exit", "no-screen"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.out, answers_);
  run = Run({"no-screen"});
  EXPECT_EQ(run.exit_code, 123);
  EXPECT_EQ(run.out, "");
  run = Run({"no-exit", "exception"});
  EXPECT_NE(run.exit_code, 0);
  EXPECT_NE(run.exit_code, 123);
  EXPECT_EQ(run.out, Line("tmoGetRhsOne"));
  EXPECT_THAT(run.err, HasSubstr("tmomf9glu: assertion failed: !exceptionIndicator"));
}

TEST_F(MissingFunction, MayBeCalledByTheCallback) {
  const auto run = Run({"no-exit", "no-screen", "nested", "locking"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.out, StartsWith("nested 1\nnested 2\nresult 0\n"));
}

TEST_F(MissingFunction, AsksTheCallback) {
  const auto run = Run({"no-exit", "no-screen", "callback", "locking"});
  EXPECT_EQ(run.exit_code, 123);
  EXPECT_EQ(run.out,
            "callback 1: tmoGetRhsOne could not be loaded or has wrong signature!\nresult 0\n"
            "callback 2: tmoNameOptFile could not be loaded or has wrong signature!\n");
}

}  // namespace
}  // namespace linfit
