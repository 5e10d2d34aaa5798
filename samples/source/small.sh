echo "small"
