#!/usr/bin/env bash
# Each library names itself lib….so.0, and libPbr lists all others as needed, the one that it never calls too.
set -euo pipefail

failures=0
expectLine() { # TEXT WHAT FILE
  grep -qF "$1" <<<"$2" || { echo "$3: expected $1 in:"; echo "$2"; failures=$((failures + 1)); }
}

names=()
for library in "$@"; do
  name=$(basename "$library" | sed 's/\.so.*/.so.0/')
  names+=("$name")
  expectLine "soname: [$name]" "$(readelf -d "$library")" "$library"
  [[ $name == libPbr.so.0 ]] && pbr=$library
done

expected="libAcl.so.0 libCliSession.so.0 libDorv.so.0 libKest.so.0 libL3.so.0 libLomu.so.0 libPbr.so.0"
expected+=" libPolicyMap.so.0 libPolicyMapCopy.so.0 libvyx.so.0"
actual=$(printf '%s\n' "${names[@]}" | LC_ALL=C sort | xargs)
if [[ $actual != "$expected" ]]; then
  echo "libraries: $actual"
  echo "expected:  $expected"
  failures=$((failures + 1))
fi

needed=$(readelf -d "$pbr")
for name in $expected; do
  [[ $name == libPbr.so.0 ]] || expectLine "Shared library: [$name]" "$needed" "$pbr"
done
exit $((failures > 0))
