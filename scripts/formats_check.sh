#!/usr/bin/env bash
# Makes one file of each kind, loads each on a deck by script, records the mix and looks at what was heard of each.
#   formats_check.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
for tool in sox ffmpeg lame flac oggenc opusenc wavpack mpcenc speexenc; do
  command -v "$tool" >/dev/null || { echo "formats: skipped, $tool is missing"; exit 0; }
done

sox -n -r 44100 -c 2 -b 16 in.wav synth 3 sine 500 sine 500 vol 0.5
sox in.wav -r 8000 -c 1 -b 16 low.wav
ff() { ffmpeg -v error -y -i in.wav "$@"; }
lame --quiet -b 160 in.wav cbr.mp3
lame --quiet -V2 in.wav vbr.mp3
cp cbr.mp3 mpeg.wav
flac --silent -f in.wav -o a.flac
oggenc -Q in.wav -o a.ogg
opusenc --quiet in.wav opus.oga
wavpack -q -y in.wav -o a.wv
mpcenc --silent --overwrite in.wav a.mpc
speexenc low.wav a.spx 2>/dev/null
sox in.wav -b 24 a.aiff
ff -c:a pcm_alaw -f aiff a.aifc
sox in.wav a.au
sox in.wav a.voc
sox low.wav a.gsm
sox low.wav -t vox a.vox
sox in.wav -t raw -c 1 -e signed -b 16 a.raw
sox low.wav -e ima-adpcm ima.wav
sox low.wav -e gsm-full-rate gsm.wav
ff a.m4a; ff alac.m4a -c:a alac; ff a.aac; ff -f ipod a.m4r; ff a.wma; ff a.asf; ff a.mp2; ff -f mp2 a.mpga; ff a.caf
ff -f rm -c:a ac3 a.rm; ff a.mkv; ff a.mov; ff a.flv; ff a.avi; ff a.mpg; ff -f 3gp -c:a aac a.3gp
files=(in.wav mpeg.wav ima.wav gsm.wav cbr.mp3 vbr.mp3 a.aiff a.aifc a.au a.voc a.gsm a.vox a.raw a.flac a.ogg opus.oga a.wv
  a.mpc a.spx a.m4a alac.m4a a.aac a.m4r a.wma a.asf a.mp2 a.mpga a.caf a.rm a.mkv a.mov a.flv a.avi a.mpg a.3gp)

# Two seconds each: loaded at the even second, played from half a second later for a second. Deck B keeps the mix running.
sox -n -r 44100 -c 2 -b 16 silence.wav trim 0 $((2 * ${#files[@]} + 5))
printf '0 load B %s\n0 command Play/Pause B\n' "$PWD/silence.wav" >script.txt
seconds=0
for file in "${files[@]}"; do
  echo "$seconds load A $PWD/$file"
  echo "$seconds.5 command Play/Pause A"
  echo "$((seconds + 1)).5 command Clear Deck A"
  seconds=$((seconds + 2))
done >>script.txt
echo "$seconds quit" >>script.txt
"$program" --offline --data "$folder/data" --script script.txt --record mix.wav

seconds=0
for file in "${files[@]}"; do
  level() { sox mix.wav -n trim "$1" 0.4 "${@:2}" stats 2>&1 | awk '/RMS lev dB/ {print $4}'; }
  tone=$(level "$seconds.9" bandpass 500 200h) all=$(level "$seconds.9")
  awk -v t="$tone" -v a="$all" 'BEGIN {exit !(a > -10 && a < -8 && a - t < 0.7)}' ||
    { echo "formats: $file was heard at $all dB, its tone at $tone dB"; exit 1; }
  seconds=$((seconds + 2))
done
cached=$(find data -name '*.wav' | wc -l)
echo "formats: ${#files[@]} files of ${#files[@]} heard at their level, $cached of them by way of the cache"
