#include "driver/banner.h"

#include <string_view>

namespace linfit {
namespace {

constexpr std::size_t kBannerWidth = 61;

struct HelpLine {
  std::string_view text;
  std::size_t width;
};

constexpr HelpLine kHelp[] = {
    {"  Format of linear least squares problem:", 79},
    {"", 79},
    {"     free variables", 79},
    {"        rss 'residual sum of squares'", 77},
    {"        coeff(j) 'coefficients to estimate'", 77},
    {"     ;", 79},
    {"     equations", 79},
    {"        objective 'dummy objective function, must be free'", 77},
    {"        fit(i)    'linear equation to fit'", 77},
    {"     ;", 79},
    {"     objective.. rss =n= 0;  // must be =n=, rss cannot appear somewhere else", 79},
    {"     fit(i)..    ydata(i) =e= sum(j, xdata(i,j)*coeff(j));", 79},
    {"     model m /objective,fit/;", 79},
    {"     solve m minimizing rss using lp;", 79},
    {"", 79},
    {"  For more readable reporting, use meaningful names, like:", 79},
    {"", 79},
    {"     variables rss, const, income;", 79},
    {"     objective.. rss =n= 0;", 79},
    {"     fit(i)..    data(i,'food') =e= const + income*data(i,'income');", 75},
    {"", 79},
    {"  Note: data the dependent variable should be on the lhs. The independent", 79},
    {"        variables should be on the right.", 79},
};

std::string Padded(std::string_view text, std::size_t width) {
  std::string line(text);
  line.resize(width, ' ');
  return line;
}

}  // namespace

std::vector<std::string> BannerLines() {
  const std::string rule(kBannerWidth, '=');
  return {rule, Padded("  Least Squares Solver", kBannerWidth),
          Padded("  Written by the linfit developers", kBannerWidth),
          Padded("  Manual and sources: see README.md", kBannerWidth), rule};
}

std::vector<std::string> HelpLines() {
  std::vector<std::string> lines;
  for (const HelpLine& line : kHelp) lines.push_back(Padded(line.text, line.width));
  return lines;
}

}  // namespace linfit
