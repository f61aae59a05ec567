#!/usr/bin/env bash
# Installs what is missing (Debian), builds, and then either runs the main
# job on the sample database ("demo") or the whole test suite ("test").
set -euo pipefail
cd "$(dirname "$0")/.."

mode=${1:-demo}
packages=(cmake g++ make pkg-config libsqlite3-dev sqlite3 qt6-base-dev libxcb1-dev)
if [ "$mode" = test ]; then
  packages+=(libgtest-dev clang libclang-rt-14-dev xvfb xauth)
fi

missing=()
for package in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  export DEBIAN_FRONTEND=noninteractive
  $sudo apt-get update -qq
  $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
fi

jobs=$(nproc)
case "$mode" in
  demo)
    cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release -DROWKEEPER_TESTS=OFF
    cmake --build build/release -j"$jobs"
    build/release/app/rowkeeper --query examples/sample.db "SELECT id, name, born, weight, active FROM person"
    ;;
  test)
    cmake -S . -B build/test -DCMAKE_BUILD_TYPE=RelWithDebInfo -DROWKEEPER_SANITIZE=ON
    cmake --build build/test -j"$jobs"
    ctest --test-dir build/test --output-on-failure -j"$jobs"
    ;;
  *)
    echo "usage: scripts/setup.sh demo|test" >&2
    exit 2
    ;;
esac
