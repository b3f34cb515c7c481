#!/usr/bin/env bash
# Fuzzes the readers of untrusted bytes with libFuzzer:
#   scripts/fuzz.sh [--seconds N] [--seed S] [HARNESS...]
# Builds build/fuzz with clang (harnesses, the platform, the host and the module instrumented
# with AddressSanitizer and UndefinedBehaviorSanitizer), then runs each harness given (default:
# all of fuzz/*Fuzz.cpp) for N seconds (default 60) on its corpus fuzz/corpus/<HARNESS>. New
# inputs collect in build/fuzz/work/<HARNESS>; inputs that crash, hang or exhaust memory are
# written to fuzz/crashes/<HARNESS>/. Afterwards the corpus is minimized back into
# fuzz/corpus/<HARNESS> (libFuzzer -merge=1, edges only, of the old corpus and the new inputs
# into a fresh folder, which replaces the old). A corpus stored packed, fuzz/corpus/<HARNESS>.tar.xz
# (the DXF corpus, which is text), is unpacked into build/fuzz/corpus first and packed again. Prints executions, coverage and findings per
# harness; exits non-zero when any harness found something. Installs clang if it is missing.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

seconds=60
seed=0 # 0: libFuzzer picks one
harnesses=()
while (($#)); do
  case $1 in
  --seconds)
    seconds=${2:?--seconds needs a number}
    shift 2
    ;;
  --seed)
    seed=${2:?--seed needs a number}
    shift 2
    ;;
  -h | --help)
    sed -n '2,11p' "${BASH_SOURCE[0]}" | sed 's/^# \{0,1\}//'
    exit 0
    ;;
  -*)
    echo "fuzz.sh: unknown option $1" >&2
    exit 2
    ;;
  *)
    harnesses+=("$1")
    shift
    ;;
  esac
done
if ((${#harnesses[@]} == 0)); then
  for source in fuzz/*Fuzz.cpp; do
    harnesses+=("$(basename "$source" .cpp)")
  done
fi
for harness in "${harnesses[@]}"; do
  if [[ ! -f fuzz/$harness.cpp ]]; then
    echo "fuzz.sh: no harness fuzz/$harness.cpp" >&2
    exit 2
  fi
done

bash scripts/setup-debian.sh || exit 1
if ! command -v clang++ >/dev/null ||
  ! compgen -G "/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.fuzzer-x86_64.a" >/dev/null; then
  sudo=()
  [[ $(id -u) -ne 0 ]] && sudo=(sudo)
  echo "fuzz.sh: installing clang and its libFuzzer runtime"
  export DEBIAN_FRONTEND=noninteractive
  "${sudo[@]}" apt-get update -qq &&
    "${sudo[@]}" apt-get install -y -qq --no-install-recommends clang libclang-rt-dev >/dev/null ||
    exit 1
fi

build=build/fuzz
configure=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++
  -DCUSTENTS_BUILD_FUZZ=ON -DCUSTENTS_BUILD_TESTS=OFF -DCUSTENTS_BUILD_BENCH=OFF)
command -v ninja >/dev/null && configure+=(-G Ninja)
command -v ccache >/dev/null && configure+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
echo "=== configure $build"
cmake -S . -B "$build" "${configure[@]}" >"$build.configure.log" 2>&1 ||
  { cat "$build.configure.log"; exit 1; }
echo "=== build ${harnesses[*]}"
cmake --build "$build" -j"$(nproc)" --target "${harnesses[@]}" || exit 1

# final_stat NAME LOG: the value of libFuzzer's final statistic stat::NAME.
final_stat() { sed -n "s/^stat::$1: *//p" "$2" | tail -n1; }

summary=()
found_any=0
for harness in "${harnesses[@]}"; do
  corpus=fuzz/corpus/$harness
  archive=$corpus.tar.xz
  if [[ -f $archive ]]; then
    corpus=$build/corpus/$harness
    rm -rf "$corpus"
    mkdir -p "$corpus"
    cmake -E chdir "$corpus" cmake -E tar xf "$PWD/$archive" || exit 1
  fi
  crashes=fuzz/crashes/$harness
  work=$build/work/$harness
  log=$build/work/$harness.log
  mkdir -p "$corpus" "$crashes" "$work"
  before=$(find "$crashes" -type f | wc -l)

  echo "=== $harness: $seconds s on $corpus ($(find "$corpus" -type f | wc -l) inputs)"
  # New inputs go to the first folder, the stored corpus is read from the second.
  "$build/bin/$harness" -max_total_time="$seconds" -seed="$seed" -timeout=20 \
    -print_final_stats=1 -artifact_prefix="$crashes/" "$work" "$corpus" >"$log" 2>&1
  status=$?
  found=$(($(find "$crashes" -type f | wc -l) - before))
  if ((status != 0 || found > 0)); then
    found_any=1
    grep -E "^(==[0-9]+==ERROR|SUMMARY|[A-Za-z_:]+: .*(rule|refuses|changing|keeps))" "$log" |
      head -n 5
    echo "  log: $log"
  fi
  executions=$(final_stat number_of_executed_units "$log")
  coverage=$(grep -oE "cov: [0-9]+ ft: [0-9]+" "$log" | tail -n1)

  # Minimize: the stored corpus and the new inputs, merged into a fresh folder that replaces it.
  # Edges only (-use_counters=0): the same coverage from a few times fewer files than when hit
  # counts count too, which keeps the stored corpus small.
  fresh=$build/work/$harness.merged
  rm -rf "$fresh"
  mkdir -p "$fresh"
  if "$build/bin/$harness" -merge=1 -use_counters=0 -timeout=20 -artifact_prefix="$crashes/" "$fresh" "$corpus" \
    "$work" >"$build/work/$harness.merge.log" 2>&1 && [[ -n $(ls -A "$fresh") ]]; then
    rm -rf "$corpus"
    mv "$fresh" "$corpus"
    rm -rf "$work"
    if [[ -f $archive ]]; then
      # Packed the same way every time (names sorted, one fixed date), so that an unchanged
      # corpus gives an unchanged file.
      (cd "$corpus" && find . -type f -printf "%P\n" | LC_ALL=C sort >"../$harness.list" &&
        cmake -E tar cJf "$OLDPWD/$archive" "--mtime=1970-01-01 00:00:00 UTC" \
          --files-from="../$harness.list") || exit 1
    fi
  else
    echo "  merge failed, $corpus left as it was: $build/work/$harness.merge.log"
    found_any=1
  fi
  found=$(($(find "$crashes" -type f | wc -l) - before))
  line=$(printf "%-20s %12s executions  %-22s corpus %4d  findings %d" "$harness" \
    "${executions:-?}" "${coverage:-cov: ? ft: ?}" "$(find "$corpus" -type f | wc -l)" "$found")
  echo "  $line"
  summary+=("$line")
done

echo
echo "=== summary ($seconds s per harness)"
printf "%s\n" "${summary[@]}"
if ((found_any)); then
  echo "findings in fuzz/crashes/: fix them, keep the inputs there (the fuzz tests replay them)"
  exit 1
fi
