#!/usr/bin/env bash
# check-floors accepts a small sound tree and refuses it with any one of these faults.
set -euo pipefail
check=$1
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT

put() { # FILE LINE…
  mkdir -p "$(dirname "$tree/$1")"
  printf '%s\n' "${@:2}" >"$tree/$1"
}

soundTree() {
  rm -rf "${tree:?}"/*
  put platform/Vyx/Ptr.h '#include <cstdint>'
  put platform/Kest/UniqueId.h '#include "Vyx/Ptr.h"'
  put frame/Setter.h '#include "Kest/UniqueId.h"' '#include "frame/Round.h"'
  put frame/Round.h '#include "Vyx/Ptr.h"'
  put platform/PolicyMap/Map.vyx 'namespace PolicyMap' 'unit PolicyMap header "PolicyMap/PolicyMap.h" {' \
    '  Action' '}' 'extern value Kest::UniqueId in "Kest/UniqueId.h"' 'entity Action : Vyx::Entity {' '}'
  put policy/policy.vyx 'namespace Pbr' 'import "PolicyMap/Map.vyx"' 'unit Pbr header "Pbr/Pbr.h" {' '  Config' '}' \
    'entity Config : Vyx::Entity {' '  child a: A = ("Text")' '}'
  put policy/Config.cpp '#include "Pbr/Config.h"' '#include "PolicyMap/Action.h"' '#include "frame/Setter.h"'
  put copy/Copy.cpp '#include "Pbr/Pbr.h"'
  put apps/pbrctl/main.cpp '#include "Pbr/Config.h"' '#include "pbrctl/Verb.h"' '#include "Verb.h"'
  put apps/pbrctl/Verb.h '#include <CLI/CLI.hpp>'
  put vyxc/main.cpp '#include "Lexer.h"'
  put vyxc/Lexer.h '#include <string>'
}

failures=0
accepted() {
  "$check" "$tree" || { echo "refused a sound tree"; failures=$((failures + 1)); }
}
refused() { # TEXT FILE LINE…
  soundTree
  put "${@:2}"
  local said
  if said=$("$check" "$tree" 2>&1) || ! grep -qF "$1" <<<"$said"; then
    echo "expected to be refused with '$1': ${*:2}; said: $said"
    failures=$((failures + 1))
  fi
}

soundTree
accepted
refused 'Ptr.h:2: floor 0 (platform/Vyx) uses "frame/Round.h" of floor 2 (frame)' \
  platform/Vyx/Ptr.h '#include <cstdint>' '#include "frame/Round.h"'
refused 'floor 1 (platform/Kest) uses "PolicyMap/Action.h" of floor 3' \
  platform/Kest/UniqueId.h '#include "PolicyMap/Action.h"'
refused 'uses "Pbr/Config.h" of floor 4' platform/PolicyMap/Action.cpp '#include "Pbr/Config.h"'
refused 'uses "Pbr/Config.h" of floor 4' platform/PolicyMap/Action.cpp '  #  include <Pbr/Config.h>'
refused 'uses "pbrctl/Verb.h" of floor 6' copy/Copy.cpp '#include "pbrctl/Verb.h"'
refused 'uses "policy.vyx" of floor 4' platform/PolicyMap/Other.vyx 'namespace PolicyMap' 'import "policy.vyx"'
refused 'uses "frame/Round.h" of floor 2' platform/Lomu/Lomu.vyx 'extern value Lomu::X in "frame/Round.h"'
refused '"Kest/Gone.h" is not found' copy/Copy.cpp '#include "Kest/Gone.h"'
refused 'vyxc stands alone' vyxc/Lexer.h '#include "Vyx/Ptr.h"'
refused 'vyxc stands alone' apps/pbrctl/Verb.h '#include "vyxc/Lexer.h"'
refused 'folder platform/New stands on no floor' platform/New/New.h '#include "Vyx/Ptr.h"'
exit $((failures > 0))
