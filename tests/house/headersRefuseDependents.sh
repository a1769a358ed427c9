#!/usr/bin/env bash
# check-headers accepts headers that compile alone, whatever their folder, and refuses one that does not.
set -euo pipefail
check=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

mkdir -p "$tree/platform/Vyx" "$tree/gen/Pbr"
printf '%s\n' '#pragma once' '#include <string>' 'struct Name { std::string text; };' >"$tree/platform/Vyx/Name.h"
printf '%s\n' '#pragma once' '#include "Vyx/Name.h"' 'struct Config { Name name; };' >"$tree/gen/Pbr/Config.h"
"$check" --gen "$tree/gen" "$tree"

refuses() { # HEADER
  if said=$("$check" --gen "$tree/gen" "$tree" 2>&1) || ! grep -qF "$1" <<<"$said"; then
    echo "expected $1 to be refused; said: $said"
    exit 1
  fi
}

printf '%s\n' '#pragma once' 'struct Ptr { std::string text; };' >"$tree/platform/Vyx/Ptr.h"
refuses Vyx/Ptr.h
rm "$tree/platform/Vyx/Ptr.h"
printf '%s\n' '#pragma once' 'struct Status { Config config; };' >"$tree/gen/Pbr/Status.h"
refuses Pbr/Status.h
