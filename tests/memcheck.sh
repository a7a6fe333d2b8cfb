#!/usr/bin/env bash
# Runs every unit-test program of a build under valgrind memcheck (the properties
# label is left out: it is long and exercises no other code) and fails on any
# memory error or any definitely lost byte. One summary line per program.
#   tests/memcheck.sh [BUILD_DIR]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="$(cd "${1:-$root/build/dev}" && pwd)"
logs="$build/memcheck"
rm -rf "$logs"
mkdir -p "$logs"
failed=0
for exe in "$build"/tests/structmath_*_tests; do
  name=$(basename "$exe")
  [ "$name" = structmath_properties_tests ] && continue
  log="$logs/$name.txt"
  status=0
  valgrind --tool=memcheck --error-exitcode=99 --leak-check=full \
    --errors-for-leak-kinds=definite --show-leak-kinds=definite \
    --log-file="$log" "$exe" --gtest_brief=1 >"$logs/$name.out" 2>&1 || status=$?
  errors=$(sed -n 's/.*ERROR SUMMARY: \([0-9]*\) errors.*/\1/p' "$log" | tail -1)
  lost=$(sed -n 's/.*definitely lost: \([0-9,]*\) bytes.*/\1/p' "$log" | tail -1)
  echo "memcheck: $name: ${errors:-?} errors, ${lost:-0} bytes definitely lost (exit $status)"
  if [ "$status" -ne 0 ]; then
    failed=1
    tail -40 "$log"
    tail -20 "$logs/$name.out"
  fi
done
exit $failed
