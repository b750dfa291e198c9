#include "tavolite/report/report_page.h"

#include <gtest/gtest.h>

#include <limits>

#include "base/text_file.h"
#include "tavolite/report/page_text.h"
#include "tests/host/tdxdclib/tdx_session.h"

namespace host {
namespace {

using testing_support::TemporaryDirectory;

// A small fit whose second coefficient and second observation have the name `name`.
void WriteFit(const std::filesystem::path& file, const std::string& name) {
  TdxSession session;
  ASSERT_TRUE(session.Open(file));
  session.Symbol("sigma", 0, {{{}, 0.5}});
  session.Symbol("df", 0, {{{}, 2}});
  for (const char* symbol : {"estimate", "se", "tval", "pval"}) {
    session.Symbol(symbol, 1, {{{"x"}, 0.25}, {{name}, 1e-40}});
  }
  std::vector<TdxSession::KeyedValue> limits;
  for (const char* coefficient : {"x", name.c_str()}) {
    limits.push_back({{"90%", coefficient, "LO"}, 77.0});
    limits.push_back({{"95%", coefficient, "LO"}, -1.5});
    limits.push_back({{"95%", coefficient, "UP"}, 2.125});
  }
  session.Symbol("confint", 3, limits);
  session.Symbol("resid", 1, {{{"a"}, -0.75}, {{name}, 0.5}, {{"c"}, 0.25}, {{"d"}, 0.0}});
  session.Symbol("fitted", 1, {{{"a"}, 10}, {{name}, 20}, {{"c"}, 30}, {{"d"}, 40}});
  ASSERT_TRUE(session.Close()) << session.LastError();
}

TEST(ReportPage, HoldsTheNumbersAndEscapesTexts) {
  const TemporaryDirectory directory;
  WriteFit(directory / "fit.tdx", "</script><b>'\"&\xFF");
  TdxReader reader(directory / "fit.tdx");
  const std::string page = ReportPage(reader);
  const auto holds = [&](std::string_view text) { return page.find(text) != std::string::npos; };
  EXPECT_FALSE(holds("<b>"));
  EXPECT_TRUE(holds("&lt;/script&gt;&lt;b&gt;&#39;&quot;&amp;\xEF\xBF\xBD"));
  EXPECT_TRUE(holds("[\"a\",\"\\u003c/script>\\u003cb>'\\\"&\xEF\xBF\xBD\",\"c\",\"d\"]"));
  EXPECT_TRUE(holds("<td>0.25</td><td>0.25</td><td>0.250</td><td>0.2500</td>"));
  EXPECT_TRUE(holds("<td>&lt; 1e-38</td>"));
  EXPECT_TRUE(holds("<td>-1.5</td><td>2.125</td>"));
  // The first row of the largest residuals: observed, fitted, residual, standardised.
  EXPECT_TRUE(holds("<td>9.25</td><td>10</td><td>-0.75</td><td>-1.50</td>"));
}

TEST(ReportPage, RefusesWhatIsNoRegression) {
  const TemporaryDirectory directory;
  TdxSession session;
  ASSERT_TRUE(session.Open(directory / "other.tdx"));
  session.Symbol("demand", 1, {{{"a"}, 1}});
  ASSERT_TRUE(session.Close());
  TdxReader reader(directory / "other.tdx");
  EXPECT_THROW(static_cast<void>(ReportPage(reader)), FileError);
}

TEST(PageText, Numbers) {
  EXPECT_EQ(NumberOf(836424.0555, 7), "836424.1");
  EXPECT_EQ(FixedNumber(-4.82199, 3), "-4.822");
  EXPECT_EQ(FixedNumber(1.25e12, 3), "1.25e+12");
  EXPECT_EQ(CountText(999) + CountText(1000) + CountText(1234567), "9991,0001,234,567");
  EXPECT_EQ(ProbabilityText(0.0) + ProbabilityText(0.00254) + ProbabilityText(9.44366e-4),
            "&lt; 1e-380.00250.000944");
  EXPECT_EQ(JsonNumbers(std::vector{0.1, std::numeric_limits<double>::quiet_NaN(), 1e300}),
            "[0.1,null,1e+300]");
}

}  // namespace
}  // namespace host
