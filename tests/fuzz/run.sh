#!/usr/bin/env bash
# Runs every fuzz target of a fuzz-preset build for a bounded time on a scratch copy
# of its seeds, prints one line per target with its run count, and fails on any
# finding (the reproducer is kept under the build directory).
#   tests/fuzz/run.sh [BUILD_DIR [SECONDS]]
set -euo pipefail
root="$(cd "$(dirname "$0")/../.." && pwd)"
build="$(cd "${1:-$root/build/fuzz}" && pwd)"
seconds="${2:-30}"
work="$build/fuzz-runs"
rm -rf "$work"
mkdir -p "$work"

seeds_for() {
  local target=$1 corpus=$2
  case $target in
    fuzz_xyz) cp "$root"/data/*.xyz "$root"/tests/data/reproducers/*.xyz "$corpus"/ ;;
    fuzz_sdf)
      # The first byte says which records to skip; a zero byte reads them all.
      for f in "$root"/data/*.sdf "$root"/tests/data/io/*.sdf "$root"/tests/data/reproducers/*.sdf; do
        { printf '\0'; cat "$f"; } > "$corpus/$(basename "$f")"
      done ;;
    fuzz_cube)
      cp "$root"/tests/data/reproducers/*.cube "$corpus"/
      # The bundled density cut to its first lines keeps inputs small and fast.
      head -c 3000 "$root"/data/water_density.cube > "$corpus"/water_density_start.cube ;;
    *) cp "$root/tests/fuzz/seeds/${target#fuzz_}"/* "$corpus"/ ;;
  esac
}

failed=0
for exe in "$build"/tests/fuzz/fuzz_*; do
  [ -x "$exe" ] || continue
  target=$(basename "$exe")
  corpus="$work/$target/corpus"
  mkdir -p "$corpus" "$work/$target/findings"
  seeds_for "$target" "$corpus"
  log="$work/$target/log.txt"
  if (cd "$work/$target/findings" &&
      "$exe" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 -max_len=4096 \
        -print_final_stats=1 "$corpus" >"$log" 2>&1); then
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
    echo "fuzz: $target: $runs runs in ${seconds} s, no findings"
  else
    failed=1
    echo "fuzz: $target: FINDING (log $log)"
    grep -E "ERROR|SUMMARY|Test unit written|runtime error" "$log" | head -20 || true
  fi
done
exit $failed
