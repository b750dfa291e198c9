#include "estimation/real_field.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace linfit {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

TEST(RealField, ReportNumbers) {
  const struct {
    double value;
    const char* text;
  } rows[] = {
      {0.0, "      0.00000"},
      {-0.0, "      0.00000"},
      {-1.5, "     -1.50000"},
      {9.999996, "     10.00000"},
      // From three significant digits on, numbers are in fixed form.
      {0.001, "      0.00100"},
      {-0.001, "     -0.00100"},
      {std::nextafter(0.001, 0.0), "  1.00000E-03"},
      {0.000999, "  9.99000E-04"},
      {-9.999996e-5, " -1.00000E-04"},
      // The widest that fit, and what no longer does once it is rounded.
      {9999999.99999, "9999999.99999"},
      {9999999.999996, "  1.00000E+07"},
      {-999999.99999, "-999999.99999"},
      {-999999.999996, " -1.00000E+06"},
      {-1e7, " -1.00000E+07"},
      {1e100, " 1.00000E+100"},
      {kLargest, " 1.79769E+308"},
      {-kLargest, "-1.79769E+308"},
      {5e-324, " 4.94066E-324"},
      {kInfinity, "     Infinity"},
      {-kInfinity, "    -Infinity"},
      {std::nan(""), "          NaN"},
      {-std::nan(""), "          NaN"},
  };
  for (const auto& row : rows) EXPECT_EQ(RealField(row.value, 13, 5), row.text);
}

TEST(RealField, DumpNumbers) {
  EXPECT_EQ(RealField(1.0, 15, 7), "      1.0000000");
  EXPECT_EQ(RealField(1e-5, 15, 7), "      0.0000100");
  EXPECT_EQ(RealField(9.9e-6, 15, 7), "  9.9000000E-06");
  EXPECT_EQ(RealField(-kLargest, 15, 7), "-1.7976931E+308");
  EXPECT_EQ(RealField(-kInfinity, 15, 7), "      -Infinity");
}

TEST(FreeReal, IsShortAfterABlank) {
  EXPECT_EQ(FreeReal(224.0), " 224");
  EXPECT_EQ(FreeReal(-0.1), " -0.1");
  EXPECT_EQ(FreeReal(1.5e-300), " 1.5E-300");
}

}  // namespace
}  // namespace linfit
