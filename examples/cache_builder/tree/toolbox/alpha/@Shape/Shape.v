# Shape.v
