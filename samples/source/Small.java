class Small { int one = 1; }
