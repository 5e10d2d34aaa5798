int small(void) { return 1; }
