#include "text/real_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace linfit {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

using ValueAndText = std::pair<double, const char*>;

class ReportField : public testing::TestWithParam<ValueAndText> {};
TEST_P(ReportField, IsTheText) {
  EXPECT_EQ(RealField(GetParam().first, 13, 5), GetParam().second);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, ReportField,
    testing::Values(
        ValueAndText{0.0, "      0.00000"}, ValueAndText{-0.0, "      0.00000"},
        ValueAndText{-1.5, "     -1.50000"}, ValueAndText{9.999996, "     10.00000"},
        // From three significant digits on, numbers are in fixed form.
        ValueAndText{0.001, "      0.00100"}, ValueAndText{-0.001, "     -0.00100"},
        ValueAndText{std::nextafter(0.001, 0.0), "  1.00000E-03"},
        ValueAndText{0.000999, "  9.99000E-04"}, ValueAndText{-9.999996e-5, " -1.00000E-04"},
        // The widest that fit, and what no longer does once it is rounded.
        ValueAndText{9999999.99999, "9999999.99999"}, ValueAndText{9999999.999996, "  1.00000E+07"},
        ValueAndText{-999999.99999, "-999999.99999"}, ValueAndText{-999999.999996, " -1.00000E+06"},
        ValueAndText{1e100, " 1.00000E+100"}, ValueAndText{kLargest, " 1.79769E+308"},
        ValueAndText{-kLargest, "-1.79769E+308"}, ValueAndText{5e-324, " 4.94066E-324"},
        ValueAndText{kInfinity, "     Infinity"}, ValueAndText{-kInfinity, "    -Infinity"},
        ValueAndText{std::nan(""), "          NaN"}, ValueAndText{-std::nan(""), "          NaN"}));

class DumpField : public testing::TestWithParam<ValueAndText> {};
TEST_P(DumpField, IsTheText) {
  EXPECT_EQ(RealField(GetParam().first, 15, 7), GetParam().second);
}
INSTANTIATE_TEST_SUITE_P(Rows, DumpField,
                         testing::Values(ValueAndText{1.0, "      1.0000000"},
                                         ValueAndText{1e-5, "      0.0000100"},
                                         ValueAndText{9.9e-6, "  9.9000000E-06"},
                                         ValueAndText{-kLargest, "-1.7976931E+308"},
                                         ValueAndText{-kInfinity, "      -Infinity"}));

TEST(FreeReal, IsShortAfterABlank) {
  EXPECT_EQ(FreeReal(224.0), " 224");
  EXPECT_EQ(FreeReal(-0.1), " -0.1");
  EXPECT_EQ(FreeReal(1.5e-300), " 1.5E-300");
}

}  // namespace
}  // namespace linfit
