#!/usr/bin/env bash
# The layer check itself: a tree with an include that runs up a layer, or two modules
# that include each other, fails it; the same tree without them passes.
set -euo pipefail
check="$(dirname "$0")/../../scripts/check-layers"
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree/engine" "$tree/stats" "$tree/surface"
write() { mkdir -p "$(dirname "$tree/$1")"; printf '%s\n' "${@:2}" > "$tree/$1"; }
write engine/money.h '#pragma once'
write engine/game_state.h '#pragma once' '#include "engine/money.h"'
write engine/roll_cycle.h '#pragma once' '#include "engine/game_state.h"'
write engine/roll_cycle.cpp '#include "engine/roll_cycle.h"'
write stats/log.h '#pragma once' '#include "engine/game_state.h"'
write stats/log.cpp '#include "stats/log.h"'
write surface/table.cpp '#include "engine/roll_cycle.h"'
python3 "$check" "$tree" || { echo "a clean tree failed the check"; exit 1; }

expect_fault() {  # file, line to add, what the check must say
  cp "$tree/$1" "$tree/$1.saved"
  printf '%s\n' "$2" >> "$tree/$1"
  if out=$(python3 "$check" "$tree"); then echo "not caught: $2 in $1"; exit 1; fi
  grep -q "$3" <<< "$out" || { echo "caught without saying '$3': $out"; exit 1; }
  mv "$tree/$1.saved" "$tree/$1"
}
expect_fault engine/money.h '#include "engine/roll_cycle.h"' 'needs the game object'
expect_fault engine/roll_cycle.cpp '#include "surface/table.h"' 'above the core'
write stats/log.cpp '#include "stats/log.h"' '#include "engine/roll_cycle.h"'
expect_fault engine/roll_cycle.cpp '#include "stats/log.h"' "include each other's headers"
echo "layer check: every fault caught"
