# Consumption explained by income, interest, unemployment and inflation, by quarter.
#
# What it shows: observations with two labels, a year and a quarter. They come back in the listing as
# fit(1959,Q1) and as the keys of residuals and fitted values in the results file.

set PERIODS dimen 2;

param consumption{PERIODS};
param income{PERIODS};
param bills{PERIODS};
param unemployment{PERIODS};
param inflation{PERIODS};

var rss;
var propensity;
var interest;
var jobless;
var prices;

minimize objective: rss;

fit{(y,q) in PERIODS}:
  consumption[y,q] = income[y,q] * propensity + bills[y,q] * interest +
                     unemployment[y,q] * jobless + inflation[y,q] * prices;

solve;
end;
