#!/usr/bin/make -f
all: ; @echo small
