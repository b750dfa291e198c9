#include "tavolite/report/page_tables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <string_view>

#include "tavolite/report/page_text.h"

namespace host {

namespace {

std::string Head(std::initializer_list<std::string_view> titles) {
  std::string html = "<thead><tr>";
  for (const std::string_view title : titles) {
    html.append("<th scope=\"col\">").append(title).append("</th>");
  }
  return html + "</tr></thead>\n";
}

// The first cell is the row's head. All cells are HTML.
std::string Row(std::string_view head, std::initializer_list<std::string> cells) {
  std::string html = "<tr><th scope=\"row\">";
  html.append(head).append("</th>");
  for (const std::string& cell : cells) html += "<td>" + cell + "</td>";
  return html + "</tr>\n";
}

std::string Table(std::string_view kind, const std::string& head, const std::string& rows) {
  return "<div class=\"wide\"><table class=\"" + std::string(kind) + "\">" + head + "<tbody>\n" +
         rows + "</tbody></table></div>\n";
}

std::string Label(std::string_view text) {
  return "<bdi class=\"label\">" + HtmlText(text) + "</bdi>";
}

std::string Stars(double p) {
  return p < 0.001 ? "***" : p < 0.01 ? "**" : p < 0.05 ? "*" : p < 0.1 ? "." : "";
}

std::string Between(Range range) {
  return NumberOf(range.low, 5) + " to " + NumberOf(range.high, 5);
}

}  // namespace

std::string CoefficientTable(const FitData& fit) {
  std::string rows;
  for (const FitCoefficient& c : fit.coefficients) {
    rows +=
        Row(Label(c.name),
            {NumberOf(c.estimate), NumberOf(c.error), FixedNumber(c.t, 3), ProbabilityText(c.p),
             "<span class=\"stars\">" + Stars(c.p) + "</span>", NumberOf(c.low), NumberOf(c.high)});
  }
  return Table("coefficients",
               Head({"Coefficient", "Estimate", "Std. error", "t value", "Pr(&gt;|t|)",
                     "<span class=\"unseen\">Significance</span>", "Lower 95 %", "Upper 95 %"}),
               rows);
}

std::string IntervalTable(const FitData& fit) {
  std::string rows;
  for (const FitCoefficient& c : fit.coefficients) {
    rows +=
        Row(Label(c.name), {FixedNumber(c.low / c.error, 3), FixedNumber(c.estimate / c.error, 3),
                            FixedNumber(c.high / c.error, 3)});
  }
  return Table("numbers", Head({"In standard errors", "Lower 95 %", "Estimate", "Upper 95 %"}),
               rows);
}

std::string ResidualGroupTable(const FigureData& figures) {
  std::string rows;
  for (const FittedGroup& group : figures.groups) {
    rows += Row(Between(group.fitted),
                {CountText(group.count), NumberOf(group.mean, 4), NumberOf(group.deviation, 4),
                 NumberOf(group.residual.low, 4), NumberOf(group.residual.high, 4)});
  }
  return Table("numbers",
               Head({"Fitted values", "Observations", "Mean residual", "Std. deviation", "Smallest",
                     "Largest"}),
               rows);
}

std::string ScaleGroupTable(const FigureData& figures) {
  std::string rows;
  for (const FittedGroup& group : figures.groups) {
    rows += Row(Between(group.fitted), {CountText(group.count), NumberOf(group.scale, 4)});
  }
  return Table("numbers",
               Head({"Fitted values", "Observations", "Mean &radic;|standardised residual|"}),
               rows);
}

std::string QuantileTable(const FigureData& figures) {
  const QuantilePlot& plot = figures.quantiles;
  std::string rows;
  const auto add = [&](std::string_view name, std::size_t k) {
    rows += Row(name, {FixedNumber(plot.normal[k], 3), FixedNumber(plot.observed[k], 3),
                       FixedNumber(plot.low[k], 3), FixedNumber(plot.high[k], 3)});
  };
  if (plot.normal.empty()) return {};
  add("Smallest", 0);
  // The quantile that is drawn nearest to each of these probabilities.
  for (const double percent : {1.0, 5.0, 10.0, 25.0, 50.0, 75.0, 90.0, 95.0, 99.0}) {
    const auto distance = [&](double z) {
      return std::abs(50.0 * std::erfc(-z / std::sqrt(2.0)) - percent);
    };
    const auto nearest = std::ranges::min_element(plot.normal, {}, distance);
    if (distance(*nearest) > 0.5) continue;
    add(NumberOf(percent) + " %", static_cast<std::size_t>(nearest - plot.normal.begin()));
  }
  add("Largest", plot.normal.size() - 1);
  return Table("numbers", Head({"Quantile", "Normal", "Observed", "Band from", "to"}), rows);
}

std::string HistogramTable(const FigureData& figures) {
  const Histogram& histogram = figures.histogram;
  std::string rows;
  for (std::size_t k = 0; k < histogram.count.size(); ++k) {
    const double start = histogram.start + static_cast<double>(k) * histogram.step;
    rows += Row(Between({start, start + histogram.step}),
                {CountText(static_cast<std::size_t>(histogram.count[k]))});
  }
  return Table("numbers", Head({"Residuals", "Observations"}), rows);
}

std::string LargestTable(const FitData& fit, const FigureData& figures) {
  std::string rows;
  for (const std::size_t i : figures.largest) {
    const double residual = fit.residuals.values[i];
    const std::string number = std::to_string(i + 1);
    const std::string link = "<a href=\"#residuals\" data-number=\"" + number + "\">" +
                             Label(LabelText(fit.residuals.Keys(i))) + "</a>";
    rows += Row(link, {NumberOf(fit.fitted[i] + residual, 6), NumberOf(fit.fitted[i], 6),
                       NumberOf(residual, 4),
                       figures.standardised ? FixedNumber(residual / fit.sigma, 2) : "undefined"});
  }
  return Table("largest", Head({"Observation", "Observed", "Fitted", "Residual", "Standardised"}),
               rows);
}

}  // namespace host
