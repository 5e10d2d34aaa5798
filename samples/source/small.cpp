namespace small { int one = 1; }
