#!/usr/bin/env ruby
puts "small"
