const one = 1;
