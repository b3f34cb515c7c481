#!/usr/bin/env bash
# Installs the packages the build, the tests and the benchmarks need on Debian 12.
# Idempotent: when everything is installed already it only says so.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  libgtest-dev libgmock-dev libbenchmark-dev
  libcli11-dev rapidjson-dev libcairo2-dev fonts-dejavu-core
  python3-ezdxf python3-matplotlib fonts-wqy-microhei
)

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$package")
  fi
done

if ((${#missing[@]} == 0)); then
  echo "setup: all ${#packages[@]} packages are installed"
  exit 0
fi

sudo=()
if [[ $(id -u) -ne 0 ]]; then
  sudo=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
echo "setup: installing ${missing[*]}"
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "setup: done"
