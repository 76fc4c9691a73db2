#!/bin/sh
# Installs the build, moves the prefix, and builds and runs the example against it, as a stranger would:
# once by find_package, once by pkg-config. Every thumbnail's size is read back.
# Usage: install-test.sh BUILD EXAMPLES COMPILER LIBDIR COMPILER_FLAGS
set -eu

build=$1
examples=$2
compiler=$3
libdir=$4
flags=$5

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix="$scratch/moved here"

# A gray BMP of 300 x 200 pixels, 24 bits each: file header, information header, rows.
write_input() {
    printf 'BM\126\277\002\000\000\000\000\000\066\000\000\000'
    printf '\050\000\000\000\054\001\000\000\310\000\000\000\001\000\030\000'
    head -c 24 /dev/zero
    head -c 180000 /dev/zero | tr '\000' '\200'
}

# Width and height out of the header chunk (ISO/IEC 15948, 11.2.2).
expect_png_size() { # FILE "WIDTH HEIGHT"
    size=$(od -An -j16 -N8 -tu4 --endian=big "$1" | xargs)
    [ "$size" = "$2" ] || {
        echo "$1: expected $2 pixels, found $size" >&2
        exit 1
    }
}

input="$scratch/$(printf 'gr\303\274n.bmp')" # a name that needs UTF-8, in a locale that has none
export LC_ALL=C
write_input >"$input"
cmake --install "$build" --prefix "$scratch/first" >/dev/null
mv "$scratch/first" "$prefix"

cmake -G Ninja -S "$examples" -B "$scratch/example" -DCMAKE_PREFIX_PATH="$prefix" \
    -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_BUILD_TYPE=Release
cmake --build "$scratch/example"
"$scratch/example/thumbnail" "$input" "$scratch/by-package.png"
expect_png_size "$scratch/by-package.png" "160 107"

export PKG_CONFIG_PATH="$prefix/$libdir/pkgconfig"
pkg-config --exact-version "$(pkg-config --modversion KestoThumbnailer)" KestoThumbnailer
eval "set -- $(pkg-config --cflags --libs KestoThumbnailer)"
# shellcheck disable=SC2086 # several flags
"$compiler" -std=c++20 $flags "$examples/thumbnail.cpp" "$@" -o "$scratch/by-pkg-config"
LD_LIBRARY_PATH="$prefix/$libdir" "$scratch/by-pkg-config" "$input" "$scratch/by-pkg-config.png"
expect_png_size "$scratch/by-pkg-config.png" "160 107"

"$prefix/bin/kesto-thumbnail" thumb "$input" -o "$scratch/by-program.png"
expect_png_size "$scratch/by-program.png" "138 92"

# Text has the module start the program that lies beside it.
echo "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 320 200'><text y='50'>a</text></svg>" >"$scratch/text.svg"
"$prefix/bin/kesto-thumbnail" callout --kind TypeWinSVG --svg "$scratch/text.svg" -o "$scratch/callout.png"
expect_png_size "$scratch/callout.png" "147 92"
"$prefix/bin/kesto-thumbnail" thumb "$scratch/text.svg" -o "$scratch/drawing.png"
expect_png_size "$scratch/drawing.png" "147 92"
