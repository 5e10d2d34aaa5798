puts "small"
