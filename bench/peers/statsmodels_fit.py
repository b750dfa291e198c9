"""One regression as an analyst runs it in Python: read, fit, summary, intervals, write residuals and fitted values.

usage: statsmodels_fit.py TABLE OUTPUT pinv|qr
"""
import sys

import pandas
import statsmodels.api as sm

table = pandas.read_csv(sys.argv[1])
result = sm.OLS(table["y"], sm.add_constant(table.drop(columns="y"))).fit(method=sys.argv[3])
print(result.summary())
print(result.conf_int(0.05))
pandas.DataFrame({"resid": result.resid, "fitted": result.fittedvalues}).to_csv(sys.argv[2], index=False)
