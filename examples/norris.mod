# Norris's calibration line: one regressor.
#
# What it shows: coefficients as plain variables with telling names, and a constant term that the
# model states itself. The solver sees that its column is all ones and adds no other.

set OBSERVATIONS;

param x{OBSERVATIONS};
param y{OBSERVATIONS};

var rss;
var const;
var slope;

minimize objective: rss;

fit{i in OBSERVATIONS}: y[i] = const + x[i] * slope;

solve;
end;
