# fit.v
