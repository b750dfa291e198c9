#include "tavolite/design/design_check.h"

#include "tavolite/design/design_rows.h"
#include "tavolite/design/triangle.h"

namespace host {

namespace {

constexpr int kAlways = 1;
constexpr int kUnlessThere = 2;

// The leading columns of a triangle are the triangle of the leading columns.
Triangle WithoutLast(const Triangle& triangle) {
  Triangle leading{triangle.size - 1, {}};
  for (std::size_t j = 0; j < leading.size; ++j) {
    leading.values.insert(leading.values.end(), triangle.Column(j),
                          triangle.Column(j) + leading.size);
  }
  return leading;
}

}  // namespace

DesignCheck CheckDesign(const std::filesystem::path& instance, int add_constant_term,
                        const std::stop_token& stop) {
  DesignRows rows(instance);
  ReducedDesign design = ReduceRows(rows, stop);
  if (stop.stop_requested()) return {};
  const bool adds_intercept =
      add_constant_term == kAlways || (add_constant_term == kUnlessThere && !design.has_ones);
  DesignCheck check;
  check.rows = rows.Rows();
  check.response_size = rows.ResponseSize();
  std::vector<std::size_t> order;
  if (adds_intercept) order.push_back(rows.Columns());
  for (std::size_t j = 0; j < rows.Columns(); ++j) {
    check.columns.push_back(rows.ModelColumn(j));
    order.push_back(j);
  }
  if (adds_intercept) {
    check.columns.push_back(kAddedIntercept);
  } else {
    design.triangle = WithoutLast(design.triangle);
  }
  check.rank = FindRank(std::move(design.triangle), order);
  return check;
}

}  // namespace host
