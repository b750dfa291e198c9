# Longley's regression: six regressors that are nearly dependent, a test of every program since 1967.
#
# What it shows: a model with its data in a file of their own. `tavolite solve longley.mod` takes
# longley.dat beside the model; another data file is named with --data. The model has no constant
# term, so the solver adds the intercept.

set YEARS;
set REGRESSORS := {'deflator', 'gnp', 'unemployed', 'forces', 'population', 'year'};

param employed{YEARS};         # thousands of people
param x{YEARS, REGRESSORS};

var rss;                       # residual sum of squares
var coeff{REGRESSORS};

minimize objective: rss;       # rss stands here and nowhere else

fit{i in YEARS}: employed[i] = sum{j in REGRESSORS} x[i,j] * coeff[j];

solve;
end;
