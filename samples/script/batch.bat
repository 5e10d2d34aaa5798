@echo off
echo small
