# scale.v
