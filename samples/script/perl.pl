#!/usr/bin/perl
print "small\n";
