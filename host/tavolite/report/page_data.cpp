#include "tavolite/report/page_data.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <utility>

#include "tavolite/report/page_text.h"

namespace host {

namespace {

std::string Object(std::initializer_list<std::pair<const char*, std::string>> members) {
  std::string text = "{";
  for (const auto& [name, value] : members) {
    if (text.size() > 1) text += ",\n";
    text.append("\"").append(name).append("\":").append(value);
  }
  return text + "}";
}

std::string JsonNumber(double value) {
  std::string list = JsonNumbers(std::array{value});
  return list.substr(1, list.size() - 2);
}

template <class Items, class Text>
std::string Texts(const Items& items, Text text_of) {
  std::string text = "[";
  for (const auto& item : items) {
    if (text.size() > 1) text += ',';
    text += JsonText(text_of(item));
  }
  return text + "]";
}

// So many that six are left of the differences within the range; all of them where it is none.
int DigitsFor(Range range) {
  constexpr double kMostLost = 11.0;
  const double size = std::max(std::abs(range.low), std::abs(range.high));
  const double lost = std::ceil(std::log10(size / (range.high - range.low)));
  return 6 + static_cast<int>(lost < kMostLost ? std::max(lost, 0.0) : kMostLost);
}

template <class Items, class Value>
std::string Numbers(const Items& items, int digits, Value value_of) {
  std::vector<double> values;
  for (const auto& item : items) values.push_back(value_of(item));
  return JsonNumbers(values, digits);
}

template <class Items, class Value>
std::string Counts(const Items& items, Value value_of) {
  std::vector<std::int64_t> values;
  for (const auto& item : items) values.push_back(static_cast<std::int64_t>(value_of(item)));
  return JsonCounts(values);
}

std::string CoefficientsJson(const FitData& fit) {
  const auto& all = fit.coefficients;
  return Object({
      {"name", Texts(all, [](const FitCoefficient& c) { return c.name; })},
      {"t", Numbers(all, 6, [](const FitCoefficient& c) { return c.estimate / c.error; })},
      {"low", Numbers(all, 6, [](const FitCoefficient& c) { return c.low / c.error; })},
      {"high", Numbers(all, 6, [](const FitCoefficient& c) { return c.high / c.error; })},
  });
}

std::string PointsJson(const FitData& fit, const FigureData& figures) {
  const auto& points = figures.points;
  return Object({
      {"label", Texts(points, [&](std::size_t i) { return LabelText(fit.residuals.Keys(i)); })},
      {"number", Counts(points, [](std::size_t i) { return i + 1; })},
      {"fitted", Numbers(points, DigitsFor(figures.fitted_range),
                         [&](std::size_t i) { return fit.fitted[i]; })},
      {"residual", Numbers(points, DigitsFor(figures.residual_range),
                           [&](std::size_t i) { return fit.residuals.values[i]; })},
      {"normal", JsonNumbers(figures.normal)},
  });
}

std::string HexagonsJson(const Hexagons& hexagons, int x_digits) {
  return Object({{"x", JsonNumbers(hexagons.x, x_digits)},
                 {"y", JsonNumbers(hexagons.y)},
                 {"count", JsonCounts(hexagons.count)}});
}

std::string CurveJson(const Curve& curve, int x_digits) {
  return Object({{"x", JsonNumbers(curve.x, x_digits)}, {"y", JsonNumbers(curve.y)}});
}

std::string QuantilesJson(const FigureData& figures) {
  const QuantilePlot& plot = figures.quantiles;
  const auto point_of = [&](std::size_t observation) -> std::int64_t {
    const auto found = std::ranges::lower_bound(figures.points, observation);
    if (found == figures.points.end() || *found != observation) return -1;
    return found - figures.points.begin();
  };
  return Object({{"normal", JsonNumbers(plot.normal)},
                 {"observed", JsonNumbers(plot.observed)},
                 {"low", JsonNumbers(plot.low)},
                 {"high", JsonNumbers(plot.high)},
                 {"point", Counts(plot.observation, point_of)}});
}

std::string RangeJson(Range range) {
  return JsonNumbers(std::array{range.low, range.high}, DigitsFor(range));
}

}  // namespace

std::string PageDataJson(const FitData& fit, const FigureData& figures) {
  const double sigma = figures.standardised ? fit.sigma : std::nan("");
  const int digits = DigitsFor(figures.fitted_range);
  const HexagonGrid& grid = figures.grid;
  return Object({
      {"observations", std::to_string(fit.fitted.size())},
      {"sigma", JsonNumber(sigma)},
      {"coefficients", CoefficientsJson(fit)},
      {"all", figures.all_points ? "true" : "false"},
      {"points", PointsJson(fit, figures)},
      {"ranges", Object({{"fitted", RangeJson(figures.fitted_range)},
                         {"residual", RangeJson(figures.residual_range)},
                         {"scale", RangeJson(figures.scale_range)}})},
      {"grid", Object({{"width", JsonNumber(grid.width)},
                       {"height", JsonNumber(grid.height)},
                       {"step", JsonNumber(grid.step)}})},
      {"hexagons", Object({{"residual", HexagonsJson(figures.residual_hexagons, digits)},
                           {"scale", HexagonsJson(figures.scale_hexagons, digits)}})},
      {"smooth", Object({{"residual", CurveJson(figures.residual_smooth, digits)},
                         {"scale", CurveJson(figures.scale_smooth, digits)}})},
      {"quantiles", QuantilesJson(figures)},
      {"histogram", Object({{"start", JsonNumber(figures.histogram.start)},
                            {"step", JsonNumber(figures.histogram.step)},
                            {"count", JsonCounts(figures.histogram.count)}})},
  });
}

}  // namespace host
