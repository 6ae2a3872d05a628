#!/usr/bin/env bash
# clang-tidy over the given files, or all of ours. Slow: some minutes.
set -euo pipefail
cd "$(dirname "$0")/.."
[ -f build/tidy/build.ninja ] ||
  cmake -B build/tidy -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON >/dev/null
files=("$@")
[ ${#files[@]} -gt 0 ] || mapfile -t files < <(git ls-files -- 'src/*.cpp' 'demo/*.cpp' 'tests/*.cpp' 'bench/*.cpp')
printf '%s\n' "${files[@]}" | xargs -P "$(nproc)" -n 1 clang-tidy -p build/tidy --quiet 2>/dev/null
