#!/bin/sh
# The C++ code in the README is the example that is built by the install test: readme-test.sh SOURCE_TREE
set -eu
# shellcheck disable=SC2016 # the backquotes are Markdown
sed -n '/^```cpp$/,/^```$/p' "$1/README.md" | sed '1d;$d' | diff "$1/examples/thumbnail.cpp" -
