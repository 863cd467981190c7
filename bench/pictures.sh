#!/usr/bin/env bash
# Map pictures from the command line, measured end to end in one run:
#  - the whole 300 x 320 map (the example map repeated) as BMP and as PNG;
#  - the whole 960 x 1000 map as PNG (no BMP: past the format's sides);
#  - korvane-map render against the peer's rasterizer (tmxrasterizer, Debian
#    package tiled) on the same hexes converted to its map format by kv_tmx:
#    a 50 x 50 section, a 150 x 150 section and the whole 300 x 320 map.
# Each figure is the median of RUNS runs (default 3) of wall time, CPU time
# (user + system) and peak memory (maximum resident set), from /usr/bin/time.
#
# usage: bench/pictures.sh [BUILD_DIR] (default build); RUNS=1 for a quick look.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$here/build}" && pwd)
runs=${RUNS:-3}
bin=$build/bin
app=$build/data
for t in korvane-map kv_tilemap kv_tmx; do
  [ -x "$bin/$t" ] || { echo "pictures.sh: build $t first (cmake --build $build)" >&2; exit 2; }
done
command -v tmxrasterizer >/dev/null || { echo "pictures.sh: needs tmxrasterizer (apt-get install tiled)" >&2; exit 2; }
[ -x /usr/bin/time ] || { echo "pictures.sh: needs /usr/bin/time (apt-get install time)" >&2; exit 2; }

work=$(mktemp -d "${TMPDIR:-/tmp}/kvpictures.XXXXXX")
trap 'rm -rf "$work"' EXIT
cd "$work"
export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$work

"$bin/kv_tilemap" "$here/examples/example.map" 300 320 big.map >/dev/null
"$bin/kv_tilemap" "$here/examples/example.map" 960 1000 huge.map >/dev/null

# measure NAME COMMAND...: runs it RUNS times; prints "wall cpu rss" medians
# (seconds, seconds, MB) and keeps them in $NAME.
measure() {
  local name=$1; shift
  : >"$name.runs"
  for ((i = 0; i < runs; i++)); do
    /usr/bin/time -f "%e %U %S %M" -o "$name.t" "$@" >/dev/null 2>"$name.err" || {
      echo "pictures.sh: $name failed:" >&2; cat "$name.err" >&2; exit 1; }
    awk '{printf "%.3f %.3f %.1f\n", $1, $2 + $3, $4 / 1024}' "$name.t" >>"$name.runs"
  done
  local med=$(( (runs + 1) / 2 ))
  local wall cpu rss
  wall=$(cut -d' ' -f1 "$name.runs" | sort -g | sed -n "${med}p")
  cpu=$(cut -d' ' -f2 "$name.runs" | sort -g | sed -n "${med}p")
  rss=$(cut -d' ' -f3 "$name.runs" | sort -g | sed -n "${med}p")
  printf -v "$name" '%s %s %s' "$wall" "$cpu" "$rss"
}
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }
field() { echo "$1" | cut -d' ' -f"$2"; }


echo "Machine: $(nproc) cores, load $(cut -d' ' -f1-3 /proc/loadavg); $runs runs each, medians"
echo

# 1. The whole 300 x 320 map, BMP against PNG.
measure bmp300 "$bin/korvane-map" --app "$app" render big.map big.bmp --quiet
measure png300 "$bin/korvane-map" --app "$app" render big.map big.png --quiet
echo "| Whole 300 x 320 map (13455 x 15950 pixels) | Wall | CPU | Peak memory |"
echo "|---|---|---|---|"
echo "| BMP (\`korvane-map render big.map big.bmp\`) | $(field "$bmp300" 1) s | $(field "$bmp300" 2) s | $(field "$bmp300" 3) MB |"
echo "| PNG, fast (\`... big.png\`) | $(field "$png300" 1) s | $(field "$png300" 2) s | $(field "$png300" 3) MB |"
echo "| PNG / BMP | $(ratio "$(field "$png300" 1)" "$(field "$bmp300" 1)") | $(ratio "$(field "$png300" 2)" "$(field "$bmp300" 2)") | $(ratio "$(field "$png300" 3)" "$(field "$bmp300" 3)") |"
for level in default best; do
  runs_saved=$runs; runs=1
  measure "png300$level" "$bin/korvane-map" --app "$app" render big.map "big-$level.png" --compression "$level" --quiet
  runs=$runs_saved
done
echo
echo "PNG sizes: fast $(stat -c %s big.png) bytes, default $(stat -c %s big-default.png), best $(stat -c %s big-best.png);" \
     "wall default $(field "$png300default" 1) s, best $(field "$png300best" 1) s (one run each)"
echo

# 2. The whole 960 x 1000 map as PNG (one run: it is the longest).
runs_saved=$runs; runs=1
measure png960 "$bin/korvane-map" --app "$app" render huge.map huge.png --quiet
runs=$runs_saved
echo "| Whole 960 x 1000 map (43155 x 49950 pixels), PNG | $(field "$png960" 1) s wall | $(field "$png960" 2) s CPU | $(field "$png960" 3) MB peak | $(stat -c %s huge.png) bytes |"
echo

# 3. Against the peer's rasterizer on the same hexes.
echo "| Section | Ours wall / CPU / memory | Peer wall / CPU / memory | Wall ratio | CPU ratio | Memory ratio |"
echo "|---|---|---|---|---|---|"
for sec in "50x50 100 100 50 50" "150x150 20 30 150 150" "whole 0 0 299 319"; do
  read -r label x y w h <<<"$sec"
  "$bin/kv_tmx" "$app" big.map "$x" "$y" "$w" "$h" "s$label.tmx" >/dev/null
  measure ours "$bin/korvane-map" --app "$app" render big.map "ours$label.png" --x "$x" --y "$y" --w "$w" --h "$h" --quiet
  measure theirs tmxrasterizer "s$label.tmx" "peer$label.png"
  echo "| $label (ours $(file -b "ours$label.png" | cut -d, -f2 | sed 's/^ //')) |" \
       "$(field "$ours" 1) s / $(field "$ours" 2) s / $(field "$ours" 3) MB |" \
       "$(field "$theirs" 1) s / $(field "$theirs" 2) s / $(field "$theirs" 3) MB |" \
       "$(ratio "$(field "$ours" 1)" "$(field "$theirs" 1)") | $(ratio "$(field "$ours" 2)" "$(field "$theirs" 2)") |" \
       "$(ratio "$(field "$ours" 3)" "$(field "$theirs" 3)") |"
done
