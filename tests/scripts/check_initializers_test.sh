#!/usr/bin/env bash
# The initializer check itself: a game with a member left without an initializer, at any
# depth, fails it; the same game with every member initialized passes.
set -euo pipefail
check="$(dirname "$0")/../../scripts/check-initializers"
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
mkdir -p "$tree/engine"
game() {
  printf '%s\n' '#pragma once' '#include <array>' 'struct Row { int hits = 0; };' 'struct Bare { int hits; };' \
    "struct Game { $1 };" > "$tree/engine/game_state.h"
}
game 'std::array<Row, 3> rows{}; std::array<Bare, 2> bare{}; bool on = false;'
"$check" "$tree" > /dev/null || { echo "a game with every member initialized failed the check"; exit 1; }
for members in 'std::array<Row, 3> rows{}; std::array<Bare, 2> bare{}; bool on;' \
  'std::array<Row, 3> rows{}; std::array<Bare, 2> bare; bool on = false;'; do
  game "$members"
  if out=$("$check" "$tree"); then echo "not caught: $members"; exit 1; fi
  grep -q "does not initialize" <<< "$out" || { echo "failed without naming the member: $out"; exit 1; }
done
echo "initializer check: every fault caught"
