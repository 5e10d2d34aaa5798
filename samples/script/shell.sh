#!/bin/sh
echo "small"
