# trim.v
