# plot.p
