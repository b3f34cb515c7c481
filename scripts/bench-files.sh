#!/usr/bin/env bash
# Builds the project in Release and measures drawing files at 100k and 1M entities: our DXF
# save and load (entities/s, MB/s, file size, peak memory per entity), the to_chars/from_chars
# bound for the numbers the files hold, the growth from 100k to 1M, and ezdxf reading and
# writing the plain export of the same drawings. Prints one table and writes
# OUT/bench-files.json.
#
# Usage: scripts/bench-files.sh [--quick] [--no-ezdxf-1m] [--build DIR] [--out DIR] [--keep]
#   --quick         100k entities only (about a minute)
#   --no-ezdxf-1m   our runs at 100k and 1M, ezdxf at 100k only
#   --build DIR     build folder (default build/bench-release)
#   --out DIR       where the JSON and the drawings go (default BUILD/bench-files)
#   --keep          keep the drawings (several hundred MB at 1M)
# Every measurement runs in a process of its own, so the peak memory figures do not mix.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

sizes=(100000 1000000)
ezdxf_sizes=(100000 1000000)
build=build/bench-release
out=
keep=0
while (($#)); do
  case $1 in
  --quick) sizes=(100000) ezdxf_sizes=(100000) ;;
  --no-ezdxf-1m) ezdxf_sizes=(100000) ;;
  --build) build=$2; shift ;;
  --out) out=$2; shift ;;
  --keep) keep=1 ;;
  -h | --help) sed -n '2,14p' "$0"; exit 0 ;;
  *) echo "bench-files.sh: unknown option $1" >&2; exit 2 ;;
  esac
  shift
done
out=${out:-$build/bench-files}

generator=()
if [[ ! -f $build/CMakeCache.txt ]] && command -v ninja >/dev/null; then
  generator=(-G Ninja)
fi
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B "$build" "${generator[@]}" "${launcher[@]}" -DCMAKE_BUILD_TYPE=Release \
  -DCUSTENTS_BUILD_TESTS=OFF -DCUSTENTS_BUILD_BENCH=ON >/dev/null
cmake --build "$build" --target bench_files custents CustEnts -j"$(nproc)" >/dev/null

bin=$build/bin
mkdir -p "$out"
rm -f "$out"/*.json "$out"/*.dxf

# The plain export: the application's explode command when it has one, otherwise the same
# drawing with every survey shape replaced by what its explode gives.
have_explode=0
if "$bin/custents" --help 2>/dev/null | grep -qE '^ +explode( |$)'; then
  have_explode=1
fi

have_ezdxf=0
if /usr/bin/python3 -c 'import ezdxf' >/dev/null 2>&1; then
  have_ezdxf=1
else
  echo "bench-files.sh: no ezdxf for /usr/bin/python3; skipping the comparison" >&2
fi

log() { echo "[bench-files] $*" >&2; }

log "baseline"
"$bin/bench_files" baseline >"$out/baseline.json"
for n in "${sizes[@]}"; do
  # The best of three at 100k; one run at 1M (minutes of build and load each).
  repeat=3
  ((n >= 1000000)) && repeat=1
  log "$n entities: save"
  "$bin/bench_files" --repeat "$repeat" save "$n" "$out/drawing-$n.dxf" >"$out/save-$n.json"
  log "$n entities: load"
  "$bin/bench_files" --repeat "$repeat" load "$out/drawing-$n.dxf" >"$out/load-$n.json"
  if ((have_ezdxf)) && [[ " ${ezdxf_sizes[*]} " == *" $n "* ]]; then
    if ((have_explode)); then
      log "$n entities: custents explode"
      "$bin/custents" explode "$out/drawing-$n.dxf" -o "$out/plain-$n.dxf" >/dev/null
      printf '{"mode":"plain","bytes":%d}\n' "$(stat -c %s "$out/plain-$n.dxf")" \
        >"$out/plain-$n.json"
    else
      log "$n entities: plain drawing (no explode command yet)"
      "$bin/bench_files" plain "$n" "$out/plain-$n.dxf" >"$out/plain-$n.json"
    fi
    log "$n entities: ezdxf readfile + saveas"
    # ezdxf may run out of memory on a large drawing; the table then shows no ezdxf figures.
    if ! /usr/bin/python3 bench/ezdxf_files.py "$out/plain-$n.dxf" "$out/ezdxf-$n.dxf" \
      >"$out/ezdxf-$n.json"; then
      log "$n entities: ezdxf failed; no comparison at this size"
      rm -f "$out/ezdxf-$n.json"
    fi
  fi
  ((keep)) || rm -f "$out/drawing-$n.dxf" "$out/plain-$n.dxf" "$out/ezdxf-$n.dxf"
done

/usr/bin/python3 bench/bench_files_report.py "$out" "${sizes[@]}"
echo
echo "figures: $out/bench-files.json"
