# draw.v
