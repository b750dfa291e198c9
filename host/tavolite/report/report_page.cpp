#include "tavolite/report/report_page.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

#include "tavolite/design/design_check.h"
#include "tavolite/report/page_assets.h"
#include "tavolite/report/page_data.h"
#include "tavolite/report/page_tables.h"
#include "tavolite/report/page_text.h"

namespace host {

namespace {

// Nothing is loaded, and only what stands here runs.
std::string SecurityPolicy() {
  std::string policy = "default-src 'none'; script-src";
  for (const PageAsset* script : {&kD3Script, &kPlotScript, &kReportScript}) {
    policy.append(" 'sha256-").append(script->sha256).append("'");
  }
  policy.append("; style-src 'sha256-").append(kReportStyle.sha256);
  return policy + "'; base-uri 'none'; form-action 'none'";
}

std::string Element(std::string_view tag, std::string_view text) {
  return "<" + std::string(tag) + ">" + std::string(text) + "</" + std::string(tag) + ">";
}

std::string Head(const std::string& title) {
  return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"" +
         SecurityPolicy() +
         "\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
         "<meta name=\"color-scheme\" content=\"light dark\">\n<meta name=\"referrer\" "
         "content=\"no-referrer\">\n" +
         Element("title", title) + "\n" + Element("style", kReportStyle.text) + "\n</head>\n";
}

std::string Definitions(
    std::string_view kind,
    std::initializer_list<std::pair<std::string_view, std::string>> definitions) {
  std::string html = "<dl class=\"" + std::string(kind) + "\">\n";
  for (const auto& [term, text] : definitions) {
    if (text.empty()) continue;
    html += "<div>" + Element("dt", term) + Element("dd", text) + "</div>\n";
  }
  return html + "</dl>\n";
}

std::string DateText(std::string date) {  // 2025-01-31T12:00:00Z
  if (date.size() != 20 || date[10] != 'T') return date;
  date[10] = ' ';
  return date.substr(0, 19) + " UTC";
}

std::string List(const std::vector<std::string>& items) {
  std::string html = "<ul>\n";
  for (const std::string& item : items) html += Element("li", HtmlText(item)) + "\n";
  return html + "</ul>\n";
}

std::string PageHeader(const FitData& fit, const FitOrigin& origin) {
  std::string html =
      "<header>\n<h1>Regression report</h1>\n" +
      Definitions("facts",
                  {{"Model", HtmlText(origin.model)},
                   {"Response", HtmlText(origin.response)},
                   {"Made", HtmlText(DateText(fit.header.created))},
                   {"By", HtmlText(fit.header.producer + ", " + fit.header.library_version)}}) +
      "</header>\n";
  if (!origin.warnings.empty()) {
    html += "<section class=\"warnings\">\n<h2>Warnings</h2>\n" + List(origin.warnings) +
            "</section>\n";
  }
  if (!origin.notes.empty()) {
    html += "<section class=\"notes\">\n<h2>Notes</h2>\n" + List(origin.notes) + "</section>\n";
  }
  return html;
}

std::string FTestText(const FitStatistics& statistics, double df) {
  if (std::isnan(statistics.f)) return "";
  return NumberOf(statistics.f, 6) + " <small>on " + NumberOf(statistics.f_df, 10) + " and " +
         NumberOf(df, 10) + ", p " + (statistics.f_p < kSmallestProbability ? "" : "= ") +
         ProbabilityText(statistics.f_p) + "</small>";
}

std::string FitSection(const FitData& fit, const FitOrigin& origin) {
  const FitStatistics statistics = StatisticsOf(fit);
  return "<section id=\"fit\">\n<h2>Fit</h2>\n" +
         Definitions(
             "statistics",
             {{"Observations", CountText(fit.fitted.size())},
              {"Coefficients", CountText(fit.coefficients.size())},
              {"Degrees of freedom", NumberOf(fit.df, 10)},
              {"Residual standard error", NumberOf(fit.sigma)},
              {"R-squared", FixedNumber(fit.r2, 5)},
              {"Adjusted R-squared",
               std::isnan(statistics.adjusted_r2) ? "" : FixedNumber(statistics.adjusted_r2, 5)},
              {"F statistic", FTestText(statistics, fit.df)},
              {"Residual sum of squares", NumberOf(fit.rss)},
              {"Condition number",
               std::isnan(origin.condition) ? "" : ConditionText(origin.condition)}}) +
         "</section>\n";
}

std::string CoefficientSection(const FitData& fit) {
  return "<section id=\"coefficients\">\n<h2>Coefficients</h2>\n" + CoefficientTable(fit) +
         "<p class=\"note\">Significance: *** p &lt; 0.001, ** p &lt; 0.01, * p &lt; 0.05, "
         ". p &lt; 0.1. The limits hold the coefficient with a confidence of 95 %.</p>\n"
         "</section>\n";
}

struct FigureText {
  std::string_view id;
  std::string_view title;    // HTML, like all of it: a question that the figure answers
  std::string_view caption;  // how to read it
  std::string numbers;       // one sentence
  std::string table;
};

// The script finds the place for its drawing by the class "drawing".
std::string Figure(const FigureText& figure) {
  const std::string id(figure.id);
  std::string html = "<figure id=\"" + id + "\">\n" + Element("h3", figure.title) +
                     "\n<div class=\"drawing\"><p class=\"unready\">This figure is drawn by the "
                     "page's script, which has not run. The numbers below say the same.</p></div>\n"
                     "<figcaption>" +
                     Element("p", figure.caption) + "\n<p id=\"" + id + "-numbers\">" +
                     figure.numbers + "</p></figcaption>\n";
  if (!figure.table.empty()) {
    html +=
        "<details><summary>Numbers behind this figure</summary>\n" + figure.table + "</details>\n";
  }
  return html + "</figure>\n";
}

std::string Span(Range range) {
  return NumberOf(range.low, 5) + " to " + NumberOf(range.high, 5);
}

// Of what is drawn, without the figures' margins.
Range FittedSpan(const FigureData& figures) {
  return {figures.groups.front().fitted.low, figures.groups.back().fitted.high};
}

std::string CoefficientFigure(const FitData& fit) {
  std::size_t clear = 0;
  for (const FitCoefficient& c : fit.coefficients) clear += c.low > 0.0 || c.high < 0.0 ? 1 : 0;
  return Figure(
      {"intervals", "Coefficients: which intervals keep clear of zero?",
       "Each estimate with its 95 % interval, in units of its own standard error, so that "
       "coefficients of different units compare. Filled: zero lies outside.",
       CountText(clear) + " of " + CountText(fit.coefficients.size()) +
           " intervals keep clear of zero.",
       IntervalTable(fit)});
}

std::string ResidualFigure(const FigureData& figures) {
  double mean = 0.0;
  Range residual = figures.groups.front().residual;
  for (const FittedGroup& group : figures.groups) {
    mean = std::max(mean, std::abs(group.mean));
    residual = {std::min(residual.low, group.residual.low),
                std::max(residual.high, group.residual.high)};
  }
  return Figure({"residuals", "Residuals against fitted values: is there a bend or a funnel?",
                 "The smooth line should stay near zero: a bend asks for another term. The points "
                 "should spread alike from left to right.",
                 "Fitted values from " + Span(FittedSpan(figures)) + ", residuals from " +
                     Span(residual) + ".",
                 ResidualGroupTable(figures)});
}

std::string QuantileFigure(const FigureData& figures) {
  const QuantilePlot& plot = figures.quantiles;
  std::size_t outside = 0;
  for (std::size_t k = 0; k < plot.normal.size(); ++k) {
    outside += plot.observed[k] < plot.low[k] || plot.observed[k] > plot.high[k] ? 1 : 0;
  }
  return Figure(
      {"quantiles", "Normal quantiles: do the residuals follow the line?",
       "Standardised residuals in their order against those of a normal sample. At each "
       "point of the band, 95 % of normal samples lie inside. Ends that turn away from the "
       "line are heavy or light tails.",
       CountText(outside) + " of " + CountText(plot.normal.size()) +
           " quantiles lie outside the band.",
       QuantileTable(figures)});
}

std::string ScaleFigure(const FigureData& figures) {
  double low = figures.groups.front().scale;
  double high = low;
  for (const FittedGroup& group : figures.groups) {
    low = std::min(low, group.scale);
    high = std::max(high, group.scale);
  }
  return Figure({"scale", "Scale and location: does the spread stay level?",
                 "The square root of the standardised residual's size against the fitted value. A "
                 "line that rises or falls says that the variance is not constant, and that the "
                 "standard errors are to be doubted.",
                 "In tenths of the observations its mean lies between " + NumberOf(low, 3) +
                     " and " + NumberOf(high, 3) + ".",
                 ScaleGroupTable(figures)});
}

std::string HistogramFigure(const FitData& fit, const FigureData& figures) {
  std::size_t beyond = 0;
  for (const double residual : fit.residuals.values) beyond += std::abs(residual) > 2.0 * fit.sigma;
  const double share = 100.0 * static_cast<double>(beyond) / static_cast<double>(figures.drawn);
  return Figure({"histogram", "Histogram of residuals: one hill, as wide as the curve?",
                 "All residuals; the curve is the normal density with the residual standard error. "
                 "Two hills or a long side ask for another term or another scale.",
                 figures.standardised ? CountText(beyond) + " residuals (" + NumberOf(share, 3) +
                                            " %) lie beyond two standard errors; 4.6 % would in a "
                                            "normal distribution."
                                      : "",
                 HistogramTable(figures)});
}

std::string LargestFigure(const FitData& fit, const FigureData& figures) {
  return "<figure id=\"largest\">\n<h3>Largest residuals: which observations stand out?</h3>\n" +
         LargestTable(fit, figures) + "<figcaption><p>The " + CountText(figures.largest.size()) +
         " observations with the largest standardised residuals. A link marks the observation in "
         "the figures.</p></figcaption>\n</figure>\n";
}

std::string FigureSection(const FitData& fit, const FigureData& figures) {
  std::string html = "<section id=\"figures\">\n<h2>Figures</h2>\n";
  if (figures.drawn < fit.fitted.size()) {
    html += "<p class=\"note\">" + CountText(fit.fitted.size() - figures.drawn) +
            " observations have an undefined or an infinite residual and are in no figure.</p>\n";
  }
  if (!figures.all_points) {
    html += "<p class=\"note\">Of " + CountText(figures.drawn) + " observations the " +
            CountText(figures.points.size()) +
            " with the largest residuals are drawn as points. Hexagons count all observations, the "
            "stronger their colour, the more; the histogram, the smooth lines and the quantiles "
            "are of all, too.</p>\n";
  }
  if (!figures.standardised) {
    html +=
        "<p class=\"note\">There is no residual standard error, so that residuals can't be "
        "standardised: the figures that need it are left out.</p>\n";
  }
  html +=
      "<p class=\"note only-script\">Point at an observation to see it. Click or drag over "
      "observations to mark them in all figures; Escape takes the marks away. <span id=\"marked\" "
      "role=\"status\"></span></p>\n<div class=\"figures\">\n" +
      CoefficientFigure(fit);
  if (figures.drawn > 0) {
    html += ResidualFigure(figures);
    if (figures.standardised) html += QuantileFigure(figures) + ScaleFigure(figures);
    html += HistogramFigure(fit, figures) + LargestFigure(fit, figures);
  }
  return html + "</div>\n</section>\n";
}

std::string PageFooter() {
  return "<footer>\n<p>A <em>standardised</em> residual is the residual divided by the residual "
         "standard error; leverage is not taken into account. <em>Smooth lines</em> are robust "
         "locally weighted regressions (LOWESS) over two thirds of the data, beyond 400 "
         "observations "
         "through the means of 400 groups of equal size.</p>\n"
         "<details><summary>Software in this page</summary>\n<h3>D3</h3>\n" +
         Element("pre", HtmlText(kD3Licence.text)) + "\n<h3>Observable Plot</h3>\n" +
         Element("pre", HtmlText(kPlotLicence.text)) + "\n</details>\n</footer>\n";
}

std::string Scripts(const FitData& fit, const FigureData& figures) {
  return "<script type=\"application/json\" id=\"fit-data\">" + PageDataJson(fit, figures) +
         "</script>\n" + Element("script", kD3Script.text) + "\n" +
         Element("script", kPlotScript.text) + "\n" + Element("script", kReportScript.text) + "\n";
}

FitOrigin Completed(FitOrigin origin, TdxReader& reader) {
  const RunFacts& run = reader.Header().run;
  if (origin.model.empty()) origin.model = run.model;
  if (origin.response.empty()) origin.response = run.response;
  if (origin.warnings.empty()) origin.warnings = run.warnings;
  if (std::isnan(origin.condition)) origin.condition = run.condition_number;
  if (origin.notes.empty()) origin.notes = run.notes;
  // On a page full of tests it warns.
  const auto is_told = std::erase(origin.notes, kPerfectFitNote);
  if (is_told > 0 || IsPerfectFit(reader)) origin.warnings.emplace_back(kPerfectFitNote);
  return origin;
}

}  // namespace

std::string ReportPage(TdxReader& reader, const FitOrigin& known) {
  const FitOrigin origin = Completed(known, reader);
  const FitData fit = ReadFit(reader);
  const FigureData figures = MakeFigureData(fit);
  const std::string title = "Regression report" + (origin.model.empty() ? "" : ": " + origin.model);
  return Head(HtmlText(title)) + "<body>\n<main>\n" + PageHeader(fit, origin) +
         FitSection(fit, origin) + CoefficientSection(fit) + FigureSection(fit, figures) +
         PageFooter() + "</main>\n" + Scripts(fit, figures) + "</body>\n</html>\n";
}

}  // namespace host
