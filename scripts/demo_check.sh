#!/usr/bin/env bash
# Runs the demo without a display and looks at what it recorded with another program.
#   demo_check.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$program" --demo --data "$folder/data"
seconds=$(ffprobe -v error -show_entries format=duration -of csv=p=0 mix.wav)
awk -v s="$seconds" 'BEGIN {exit !(s > 59.9 && s <= 60.1)}' || { echo "mix.wav lasts $seconds s, not 60"; exit 1; }
for at in 10 28 40; do
  level=$(sox mix.wav -n trim "$at" 2 stats 2>&1 | awk '/RMS lev dB/ {print $4}')
  awk -v l="$level" 'BEGIN {exit !(l > -30 && l < -3)}' || { echo "mix.wav at $at s has a level of $level dB"; exit 1; }
done
echo "mix.wav: $seconds s, both tracks at a level"
