# One regression as an analyst runs it in R: read, fit, summary, intervals, write residuals and fitted values.
arguments <- commandArgs(trailingOnly = TRUE)
suppressPackageStartupMessages(library(data.table))
table <- fread(arguments[1])
fit <- lm(y ~ ., data = table)
print(summary(fit))
print(confint(fit, level = 0.95))
fwrite(data.table(resid = residuals(fit), fitted = fitted(fit)), arguments[2])
