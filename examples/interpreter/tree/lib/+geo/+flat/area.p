# area.p
