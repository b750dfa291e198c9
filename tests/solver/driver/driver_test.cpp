// Parts of the driver that need no library.
#include <gtest/gtest.h>

#include <string>

#include "driver/model_check.h"

namespace linfit {
namespace {

// Two data columns of two rows, and the reserved column where one belongs.
RegressionData Extracted(int add_constant_term, double first, double second) {
  RegressionData data;
  data.n = 2;
  data.p = add_constant_term > 0 ? 3 : 2;
  data.DesignMatrix = {1.0, first, 1.0, second};
  data.DesignMatrix.resize(2 * static_cast<std::size_t>(data.p), 0.0);
  data.AddConstantTerm = add_constant_term;
  AppendName(data.CoefficientNames, 1, "first", 0);
  AppendName(data.CoefficientNames, 2, "second", 0);
  return data;
}

struct Columns {
  int option;
  double first, second;  // of the two columns, the second entry; the first one is 1
  int p;
  bool has_intercept;
  int option_after;
  std::string last_name;
};
std::ostream& operator<<(std::ostream& out, const Columns& c) {
  return out << c.option << " with " << c.first << " and " << c.second;
}

class Intercept : public testing::TestWithParam<Columns> {};
TEST_P(Intercept, IsFoundOrAdded) {
  const Columns& row = GetParam();
  RegressionData data = Extracted(row.option, row.first, row.second);
  FindOrAddIntercept(data);
  EXPECT_EQ(data.p, row.p);
  EXPECT_EQ(data.has_intercept, row.has_intercept);
  EXPECT_EQ(data.AddConstantTerm, row.option_after);
  const auto p = static_cast<std::size_t>(row.p);
  ASSERT_EQ(data.CoefficientNames.count, p);
  ASSERT_EQ(data.DesignMatrix.size(), 2 * p);
  EXPECT_EQ(DisplayName(data.CoefficientNames, p - 1), row.last_name);
  const double last = row.last_name.empty() ? 0.0 : 1.0;
  EXPECT_EQ(data.DesignMatrix[2 * (p - 1)], last);
  if (row.last_name == "Intercept") {
    EXPECT_EQ(data.DesignMatrix.back(), 1.0);
  }
}
constexpr double other = 5.0;
INSTANTIATE_TEST_SUITE_P(Cases, Intercept,
                         testing::Values(Columns{0, other, other, 2, false, 0, "second"},
                                         Columns{0, 1.0, other, 2, true, 0, "second"},
                                         // The last column isn't searched.
                                         Columns{0, other, 1.0, 2, false, 0, "second"},
                                         Columns{1, other, other, 3, true, 1, "Intercept"},
                                         Columns{1, 1.0, other, 3, true, 1, "Intercept"},
                                         Columns{2, other, other, 3, true, 1, "Intercept"},
                                         Columns{2, 1.0, other, 2, true, 2, "second"},
                                         Columns{2, other, 1.0, 2, true, 2, "second"},
                                         Columns{2, 1.0 + 0.9e-10, other, 2, true, 2, "second"},
                                         Columns{2, 1.0 - 2e-10, other, 3, true, 1, "Intercept"},
                                         Columns{3, other, other, 3, false, 3, ""},
                                         Columns{3, other, 1.0, 3, true, 3, ""},
                                         Columns{-1, other, other, 2, false, -1, "second"}));

}  // namespace
}  // namespace linfit
