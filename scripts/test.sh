#!/usr/bin/env bash
# The full check, from scratch: sets the machine up, then builds and runs every test twice,
#   build/ci-release  RelWithDebInfo, warnings as errors;
#   build/ci-asan     Debug with AddressSanitizer and UndefinedBehaviorSanitizer, warnings as
#                     errors, leak detection on.
# Exits non-zero when either configuration fails to build or has a failing test.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

bash scripts/setup-debian.sh || exit 1

export ASAN_OPTIONS=detect_leaks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
jobs=$(nproc)
generator=()
if command -v ninja >/dev/null; then
  generator=(-G Ninja)
fi

# run_configuration NAME CMAKE-ARGS...: configure, build and test build/NAME from scratch.
run_configuration() {
  local name=$1
  shift
  local dir=build/$name
  rm -rf "$dir"
  echo "=== $name: configure"
  cmake -S . -B "$dir" "${generator[@]}" "$@" || return 1
  echo "=== $name: build"
  cmake --build "$dir" -j"$jobs" || return 1
  echo "=== $name: test"
  (cd "$dir" && ctest --output-on-failure -j"$jobs") 2>&1 | tee "$dir/ctest.log"
  return "${PIPESTATUS[0]}"
}

start=$SECONDS
names=(ci-release ci-asan)
status=()
run_configuration ci-release -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCUSTENTS_WERROR=ON
status+=($?)
run_configuration ci-asan -DCMAKE_BUILD_TYPE=Debug -DCUSTENTS_SANITIZE=ON -DCUSTENTS_WERROR=ON \
  -DCUSTENTS_BUILD_BENCH=OFF
status+=($?)

echo
echo "=== summary ($((SECONDS - start)) s)"
failed=0
for i in "${!names[@]}"; do
  name=${names[$i]}
  if [[ ${status[$i]} -eq 0 ]]; then
    echo "$name: PASSED"
  else
    echo "$name: FAILED"
    failed=1
  fi
  if [[ -f build/$name/ctest.log ]]; then
    grep -E "tests passed|tests failed|Total Test time" "build/$name/ctest.log" | sed "s/^/  /"
  else
    echo "  (no tests ran: configure or build failed)"
  fi
done
exit "$failed"
