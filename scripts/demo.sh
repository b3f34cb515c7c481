#!/usr/bin/env bash
# Sets the machine up, builds the project in Release into build/release and has the reference
# host application draw the built-in sample drawing of the CustEnts module's survey shapes into
# build/release/demo/demo.svg and demo.png.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

bash scripts/setup-debian.sh

build=build/release
generator=()
# A build folder keeps the generator it was first configured with.
if [[ ! -f $build/CMakeCache.txt ]] && command -v ninja >/dev/null; then
  generator=(-G Ninja)
fi
cmake -S . -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE=Release
cmake --build "$build" -j"$(nproc)"

"$build/bin/custents" demo --out "$build/demo"
