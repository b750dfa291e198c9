# Murder rates of the states of the United States and what goes with them.
#
# What it shows: a CSV table read by MathProg's `table` statement. The table's name counts from this
# file's directory, wherever the command is started.

set STATES;
set REGRESSORS := {'hs_grad', 'poverty', 'single', 'white', 'urban'};

param murder{STATES};
param hs_grad{STATES};
param poverty{STATES};
param single{STATES};
param white{STATES};
param urban{STATES};

table crime IN "CSV" "statecrime.csv":
  STATES <- [state], murder, hs_grad, poverty, single, white, urban;

param x{s in STATES, j in REGRESSORS} :=
  if j = 'hs_grad' then hs_grad[s]
  else if j = 'poverty' then poverty[s]
  else if j = 'single' then single[s]
  else if j = 'white' then white[s]
  else urban[s];

var rss;
var coeff{REGRESSORS};

minimize objective: rss;

fit{s in STATES}: murder[s] = sum{j in REGRESSORS} x[s,j] * coeff[j];

solve;
end;
