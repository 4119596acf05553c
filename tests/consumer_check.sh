#!/usr/bin/env bash
# Installs the built tree into a temporary prefix and builds the example
# consumer against it twice: through find_package and through pkg-config.
# Both must run and print the same hash of the default database.
set -euo pipefail
build_dir="$1"
source_dir="$2"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
prefix="$work/prefix"

cmake --install "$build_dir" --prefix "$prefix" > "$work/install.log"

cmake -S "$source_dir/examples/consumer" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" > "$work/configure.log"
cmake --build "$work/cmake" > "$work/build.log"
libdir="$(dirname "$(find "$prefix" -name 'libdatabase.so' | head -n 1)")"
by_cmake="$(LD_LIBRARY_PATH="$libdir" "$work/cmake/consumer")"

export PKG_CONFIG_PATH="$libdir/pkgconfig"
# The .pc file was written for the real prefix; point it at the temporary one.
sed -i "s|^prefix=.*|prefix=$prefix|" "$libdir/pkgconfig/database.pc"
# shellcheck disable=SC2046
g++ -std=c++17 -fPIC "$source_dir/examples/consumer/main.cpp" -o "$work/consumer-pc" $(pkg-config --cflags --libs database)
by_pkgconfig="$(LD_LIBRARY_PATH="$libdir" "$work/consumer-pc")"

echo "find_package: $by_cmake"
echo "pkg-config:   $by_pkgconfig"
[ "${#by_cmake}" -eq 40 ] && [ "$by_cmake" = "$by_pkgconfig" ]
