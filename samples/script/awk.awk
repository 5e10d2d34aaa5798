#!/usr/bin/awk -f
BEGIN { print "small" }
