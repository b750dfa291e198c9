#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "numerics/error_monitor.h"
#include "numerics/gausin.h"
#include "numerics/studin.h"
#include "tests/solver/numerics/tables.h"

namespace linfit_test {
namespace {

using namespace linfit;  // NOLINT: everything here is under test
using testing_support::ShareOfTolerance;
using testing_support::WorstRow;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string PrintedBy(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  action();
  std::string text = testing::internal::GetCapturedStdout();
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

// To the last bit where the tables' mathematical library is used.
double DoubleDistance(double actual, double expected) {
  return kExactMath ? testing_support::Ulps(actual, expected)
                    : ShareOfTolerance(actual, expected, 1e-12, 1e-13);
}
constexpr double kDoubleBound = kExactMath ? 0.0 : 1.0;

TEST(Studin, AgreesWithTheTable) {
  ErrorMonitor monitor;
  WorstRow worst("studin_small.csv", kDoubleBound);
  for (const Row& row : ReadTable("studin_small.csv")) {
    const double p = row.Double("p_hex");
    int ifault = -1;
    const double t = STUDIN(p, row.Int("df"), ifault, monitor);
    EXPECT_EQ(ifault, row.Int("ifault")) << row.text;
    if (!kExactMath && row.Int("df") == 1 && std::min(p, 1.0 - p) < 0.005) {
      continue;  // 1 - c^2 magnifies the last bit of the library's cosine
    }
    worst.Add(DoubleDistance(t, row.Double("t_hex")), row.text);
  }
}

TEST(Gausin, AgreesWithTheTable) {
  ErrorMonitor monitor;
  WorstRow worst("gausin_small.csv", kDoubleBound);
  for (const Row& row : ReadTable("gausin_small.csv")) {
    worst.Add(DoubleDistance(GAUSIN(row.Double("p_hex"), monitor), row.Double("x_hex")), row.text);
  }
  EXPECT_EQ(GAUSIN(0.5, monitor), 0.0);
  EXPECT_TRUE(std::isnan(GAUSIN(kNaN, monitor)));
}

TEST(Studin, FaultsAndUndefinedValues) {
  ErrorMonitor monitor;
  int ifault = -1;
  EXPECT_EQ(STUDIN(0.0, 0, ifault, monitor), 0.0);
  EXPECT_EQ(ifault, 1) << "df is looked at before p";
  for (const double p : {0.0, 1.0, -0.1, 1.1, -HUGE_VAL, HUGE_VAL}) {
    for (const int df : {1, 2, 3, 400000}) {
      EXPECT_EQ(STUDIN(p, df, ifault, monitor), 0.0);
      EXPECT_EQ(ifault, 2) << p << ' ' << df;
    }
  }
  for (const int df : {1, 2, 3, 50}) {
    EXPECT_TRUE(std::isnan(STUDIN(kNaN, df, ifault, monitor)));
    EXPECT_EQ(ifault, 0);
  }
  EXPECT_EQ(StudinFailureText(0), "");
}

TEST(Studin, UpperQuantileStopsOnFaults) {
  ErrorMonitor monitor;
  const auto unexpected = [](std::string_view) { ADD_FAILURE() << "stopped without a fault"; };
  int ifault = -1;
  EXPECT_EQ(UpperStudentQuantile(0.025, 7, monitor, unexpected),
            -STUDIN(0.025, 7, ifault, monitor));
  const auto thrown = [](std::string_view message) { throw std::string(message); };
  const auto message_of = [&](double p, int df) {
    try {
      UpperStudentQuantile(p, df, monitor, thrown);
    } catch (const std::string& message) {
      return message;
    }
    return std::string("no stop");
  };
  EXPECT_EQ(message_of(0.025, 0), "df incorrect in call to STUDIN");
  EXPECT_EQ(message_of(1.0, 7), "p incorrect in call to STUDIN");
}

TEST(Gausin, ReportsAnArgumentOutOfRange) {
  ErrorMonitor monitor;
  const struct {
    double p;
    const char* field;
  } cases[] = {{0.0, "    0.00000E+00"},       {1.0, "    1.00000E+00"},
               {1.5, "    1.50000E+00"},       {-0.25, "   -2.50000E-01"},
               {-9.999996, "   -1.00000E+01"}, {1e300, "    1.00000+300"},
               {-1e-300, "   -1.00000-300"},   {HUGE_VAL, "       Infinity"}};
  for (const auto& [p, field] : cases) {
    double x = -1.0;
    const std::string text = PrintedBy([&, value = p] { x = GAUSIN(value, monitor); });
    EXPECT_EQ(text, std::string("       ***** CERN G105 GAUSIN ERROR G105.1: ARGUMENT P =") +
                        field + " NOT IN RANGE\n");
    EXPECT_EQ(x, 0.0);
  }
}

TEST(Gausin, CountsItsReportsInTheRunsMonitor) {
  ErrorMonitor monitor;
  monitor.limits[FindErrorCode("G105.1")].message = 2;
  const std::string text = PrintedBy([&] {
    for (int i = 0; i < 4; ++i) GAUSIN(2.0, monitor);
  });
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
}

TEST(ErrorMonitor, TableAndLookUp) {
  const std::string table = testing_support::Lines(ReadData("error-codes.txt")).at(0);
  EXPECT_EQ(kErrorCodes, table);
  EXPECT_EQ(FindErrorCode("B100.1"), 0u);
  EXPECT_EQ(FindErrorCode("G105.1"), 119u);
  EXPECT_EQ(FindErrorCode("V202.3"), 131u);
  for (const char* unknown : {"", "G105", "G105.", "G105.3", "g105.1", "G105.1 ", "05.1G1"}) {
    EXPECT_EQ(FindErrorCode(unknown), kErrorCodeCount) << unknown;
  }
}

constexpr const char* kMessage = "       ***** CERN G105 GAUSIN ERROR G105.1: TEXT\n";
constexpr const char* kTermination =
    "       ***** CERN N002 MTLSET ... ERROR NOO2.1: RUN TERMINATED BY LIBRARY ERROR CONDITION "
    "G105.1\n";
constexpr const char* kAbend = "ABEND ROUTINE HAS BEEN CALLED.\n";

TEST(ErrorMonitor, CountsMessagesAndAborts) {
  ErrorMonitor monitor;
  ErrorLimits& limits = monitor.limits[FindErrorCode("G105.1")];
  const auto report = [&] { return CountError(monitor, "GAUSIN", "G105.1", "TEXT  "); };
  for (int i = 0; i < 300; ++i) {
    const ErrorReport unlimited = report();
    EXPECT_EQ(unlimited.lines, kMessage);
    EXPECT_FALSE(unlimited.terminate);
  }
  EXPECT_EQ(limits.message, kUnlimited);

  limits = {1, 2};
  EXPECT_EQ(report().lines, kMessage);
  const ErrorReport silent = report();
  EXPECT_EQ(silent.lines, "");
  EXPECT_FALSE(silent.terminate);
  const ErrorReport last = report();
  EXPECT_EQ(last.lines, std::string(kTermination) + kAbend);
  EXPECT_TRUE(last.terminate);
  limits = {300, 0};
  EXPECT_EQ(report().lines, std::string(kTermination) + kMessage + kAbend);

  const ErrorReport unknown = CountError(monitor, "GAUSIN", "G9", "TEXT");
  EXPECT_EQ(unknown.lines,
            std::string("       ***** CERN N002 MTLSET ... ERROR N002: ERROR CODE G9     NOT "
                        "RECOGNIZED BY ERROR MONITOR. RUN ABORTED.\n") +
                kAbend);
  EXPECT_TRUE(unknown.terminate);
}

TEST(ErrorMonitorDeathTest, EndsTheProcessWithStatusZero) {
  ErrorMonitor monitor;
  EXPECT_EXIT(ReportError(monitor, "GAUSIN", "G105.9", "TEXT"), testing::ExitedWithCode(0), "");
  monitor.limits[FindErrorCode("G105.1")].abort = 0;
  EXPECT_EXIT(GAUSIN(2.0, monitor), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace linfit_test
