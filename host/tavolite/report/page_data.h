// The data of a report page's figures as JSON, for the page's script:
//
//   observations  number of all
//   sigma         residual standard error, null without one
//   coefficients  {name[], t[], low[], high[], error[]}; low and high are the 95 % limits in
//   standard errors all           true: the points are all observations points        {label[],
//   number[], fitted[], residual[], normal[]}; number counts the observations from 1 ranges
//   {fitted, residual, scale}, each [low, high] grid          {width, height, step}: the frame and
//   the hexagons' distance in pixels hexagons      {residual, scale}, each {x[], y[], count[]}
//   smooth        {residual, scale}, each {x[], y[]}
//   quantiles     {normal[], observed[], low[], high[], point[]}; point is an index into points, or
//   -1 histogram     {start, step, count[]}
#pragma once

#include <string>

#include "tavolite/report/figure_data.h"

namespace host {

std::string PageDataJson(const FitData& fit, const FigureData& figures);

}  // namespace host
