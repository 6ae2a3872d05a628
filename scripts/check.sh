#!/usr/bin/env bash
# The rules of the tree that a program can check: formatting, who may include whom, header comments, file sizes.
set -euo pipefail
cd "$(dirname "$0")/.."
status=0
complain() { echo "check: $*" >&2; status=1; }

mapfile -t sources < <(git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h')
unformatted=$({ clang-format --dry-run -Werror "${sources[@]}" 2>&1 || true; } | sed -n 's/^\([^:]*\):[0-9]*:.*error: code should.*/\1/p' | sort -u)
[ -z "$unformatted" ] || complain "not formatted (clang-format -i FILE):" $unformatted

# room -> rooms that it may include
declare -A may=(
  [foundation]="foundation"
  [sound]="sound foundation"
  [audiofile]="audiofile sound foundation"
  [tempo]="tempo audiofile sound foundation"
  [library]="library audiofile tempo sound foundation"
  [effects]="effects tempo sound foundation"
  [console]="console effects tempo audiofile sound foundation"
  [control]="control foundation"
  [toolkit]="toolkit foundation"
  [screens]="screens toolkit control console effects tempo audiofile sound foundation"
  [shell]="shell screens toolkit control console effects tempo audiofile sound foundation"
  [platform]="platform sound foundation"
)
for file in "${sources[@]}"; do
  [[ $file == src/*/* ]] || continue
  room=${file#src/}; room=${room%%/*}
  while read -r included; do
    [[ " ${may[$room]:-} " == *" $included "* ]] || complain "$file may not include $included/"
  done < <(sed -n 's/^#include "\([a-z]*\)\/.*/\1/p' "$file" | sort -u)
  [[ $room == toolkit && $file != src/toolkit/qt/* && $file != src/toolkit/headless/* ]] &&
    grep -q '#include "toolkit/\(qt\|headless\)/' "$file" && complain "$file includes a peer"
  [[ $file == src/toolkit/qt/* ]] || ! grep -qE '#include <Q[A-Zt]' "$file" || complain "$file includes Qt"
done

for header in src/sound/*.h src/tempo/*.h src/effects/*.h src/console/*.h; do
  grep -q '^// Threads' "$header" || complain "$header says nothing about threads"
done
for file in "${sources[@]}"; do
  lines=$(wc -l <"$file")
  [ "$lines" -le 600 ] || complain "$file has $lines lines: two topics?"
done
exit $status
