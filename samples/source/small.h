int small(void);
