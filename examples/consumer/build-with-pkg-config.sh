#!/usr/bin/env bash
# Builds the same program with nothing but pkg-config and a compiler: build-with-pkg-config.sh [OUTPUT FOLDER]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
out=${1:-$here/out}
read -ra cflags <<<"$(pkg-config --cflags pbr)"
read -ra libs <<<"$(pkg-config --libs pbr)"

mkdir -p "$out/gen"
"$(pkg-config --variable=vyxc pbr)" "-I$(pkg-config --variable=includedir pbr)" --out "$out/gen" "$here/site.vyx"

mapfile -t generated < <(find "$out/gen" -name '*.cpp')
"${CXX:-c++}" -std=c++20 "${cflags[@]}" "-I$out/gen" "$here/main.cpp" "${generated[@]}" \
  "${libs[@]}" "-Wl,-rpath,$(pkg-config --variable=libdir pbr)" -o "$out/consumer"
