#!/bin/sh
# build.sh CONSUMER.c PROGRAM: the command that the documents give, with warnings as errors.
# shellcheck disable=SC2046 # the words of pkg-config are words of the command
${CC:-cc} -std=c99 -Wall -Wextra -Werror "$1" $(pkg-config --cflags --libs orv) -o "$2"
