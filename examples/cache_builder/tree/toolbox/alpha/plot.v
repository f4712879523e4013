# plot.v
