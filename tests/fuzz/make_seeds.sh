#!/usr/bin/env bash
# Writes small real files of each format into <folder>/<ext>/, made with the
# same tools the program meets files from: the seeds for the fuzz targets.
set -euo pipefail
out=${1:?usage: make_seeds.sh <folder>}
mkdir -p "$out"/{mp3,ogg,flac,wav,aac}
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

sox -q -n -r 8000 -c 1 -b 8 "$out/wav/mono8.wav" synth 0.05 sine 440
sox -q -n -r 44100 -c 2 -b 16 "$out/wav/stereo16.wav" synth 0.01 sine 440
sox -q -n -r 48000 -c 2 -b 16 "$tmp/s.wav" synth 0.3 whitenoise
sox -q -n -r 44100 -c 1 -b 16 "$tmp/m.wav" synth 0.3 sine 440

tags=(--tt "Title" --ta "Artist" --tl "Album" --ty 1999 --tn 3/9 --tg Rock --tc "a comment")
lame --quiet -b 32 --id3v2-latin1 "${tags[@]}" --add-id3v2 "$tmp/s.wav" "$out/mp3/cbr_both.mp3"
lame --quiet -V 9 "${tags[@]}" --add-id3v2 "$tmp/s.wav" "$out/mp3/vbr_utf16.mp3"
lame --quiet -b 32 "${tags[@]}" --id3v1-only "$tmp/m.wav" "$out/mp3/mono_v1.mp3"
lame --quiet -b 32 -m m --resample 32 "$tmp/m.wav" "$out/mp3/plain.mp3"

oggenc -Q -q -1 -t "Title" -a "Artist" -l "Album" -d 1999 -N 3 -G Rock "$tmp/m.wav" -o "$out/ogg/mono.ogg"
oggenc -Q -q -1 -c "COMMENT=a comment" -t "Title" -N 3 "$tmp/s.wav" -o "$out/ogg/stereo.ogg"

flac -s -f --no-padding -T TITLE=Title -T ARTIST=Artist -T GENRE=Rock -T TRACKNUMBER=3 "$tmp/m.wav" -o "$out/flac/tags.flac"
flac -s -f -8 "$tmp/s.wav" -o "$tmp/pad.flac" && head -c 12000 "$tmp/pad.flac" > "$out/flac/padded_cut.flac"
cp "$out/flac/tags.flac" "$out/aac/flac_inside.aac"
printf '\xff\xf1\x50\x80\x02\x1f\xfc\x21\x00\x49\x90\x02\x19\x00\x23\x80' > "$out/aac/adts.aac"
