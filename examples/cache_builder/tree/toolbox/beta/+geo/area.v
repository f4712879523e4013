# area.v
