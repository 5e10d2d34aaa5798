select name from letters;
