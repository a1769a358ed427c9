#!/usr/bin/env bash
# Installs the build into an empty prefix, moves that, and builds and runs examples/consumer against it: with
# CMake's package, then with pkg-config. The tree and the build folder are out of reach of both.
set -euo pipefail
build=$1
cxx=$2
examples=$(cd "$(dirname "${BASH_SOURCE[0]}")/../../examples" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

cmake --install "$build" --prefix "$scratch/staged" >"$scratch/install.log"
mv "$scratch/staged" "$scratch/prefix"
cp -r "$examples/consumer" "$scratch/source"
expected=$scratch/source/expected-output.txt

cmake -S "$scratch/source" -B "$scratch/build" -G Ninja \
  -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_PREFIX_PATH="$scratch/prefix"
cmake --build "$scratch/build" -j 2
"$scratch/build/consumer" | diff "$expected" -
echo "CMake's package: as expected"

pcFile=$(find "$scratch/prefix" -name pbr.pc)
CXX=$cxx PKG_CONFIG_PATH=$(dirname "$pcFile") "$scratch/source/build-with-pkg-config.sh" "$scratch/by-pkg-config"
"$scratch/by-pkg-config/consumer" | diff "$expected" -
echo "pkg-config: as expected"

"$scratch/prefix/bin/pbrctl" --help >"$scratch/pbrctl.log"
