print "small";
