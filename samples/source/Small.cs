class Small { int One = 1; }
