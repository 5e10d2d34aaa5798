#!/usr/bin/env bash
echo "small"
