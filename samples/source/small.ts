const one: number = 1;
