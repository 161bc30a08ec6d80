#!/usr/bin/env bash
# Deep fuzzing: builds the fuzz targets (clang, ASan + UBSan + libFuzzer),
# runs each for a number of executions or seconds, as many at once as the
# machine has cores, then merges what it found into fuzz/corpus/<target>/
# with the corpus minimised (-merge=1). Inputs are capped at --max-len
# bytes, which keeps every corpus to a few hundred kilobytes.
#
#   fuzz/deep.sh [--runs N | --seconds S] [--jobs J] [--max-len B] [TARGET...]
#
# Prints one line a target: executions, corpus files and bytes, coverage
# (edges and features from libFuzzer's last report), and any crash input,
# which is also copied into the corpus so CI replays it from then on.
set -euo pipefail
cd "$(dirname "$0")/.."

runs=1000000 seconds=0 jobs=$(nproc) max_len=2048
targets=()
while (($#)); do
  case $1 in
    --runs) runs=$2; shift 2 ;;
    --seconds) seconds=$2; runs=0; shift 2 ;;
    --jobs) jobs=$2; shift 2 ;;
    --max-len) max_len=$2; shift 2 ;;
    -h|--help) sed -n '2,13p' "$0"; exit 0 ;;
    *) targets+=("$1"); shift ;;
  esac
done

build=build-fuzz
CC=clang CXX=clang++ cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DQBO_BUILD_FUZZ=ON -DQBO_BUILD_TESTS=OFF -DQBO_BUILD_BENCH=OFF -DQBO_BUILD_TOOLS=OFF >/dev/null
cmake --build "$build" --target qbo_fuzz >/dev/null
if ((${#targets[@]} == 0)); then
  for bin in "$build"/fuzz/qbo_fuzz_*; do targets+=("${bin##*/qbo_fuzz_}"); done
fi
work=$build/deep
rm -rf "$work"
mkdir -p "$work"

# One target: fuzz into a scratch corpus seeded by the committed one, then
# merge both into a fresh minimal corpus that replaces the committed one.
fuzz_one() {
  local name=$1 bin=$build/fuzz/qbo_fuzz_$1 corpus=fuzz/corpus/$1
  local limit=(-runs="$runs")
  ((runs == 0)) && limit=(-max_total_time="$seconds")
  mkdir -p "$work/$name/new" "$work/$name/merged" "$corpus"
  local status=0
  "$bin" "${limit[@]}" -max_len="$max_len" -timeout=10 -print_final_stats=1 \
    -artifact_prefix="$work/$name/" "$work/$name/new" "$corpus" >"$work/$name/fuzz.log" 2>&1 ||
    status=$?
  for crash in "$work/$name"/crash-* "$work/$name"/timeout-* "$work/$name"/leak-*; do
    [ -e "$crash" ] && cp "$crash" "$corpus/"
  done
  "$bin" -merge=1 -max_len="$max_len" "$work/$name/merged" "$corpus" "$work/$name/new" \
    >"$work/$name/merge.log" 2>&1
  # Crash inputs stay: the merge keeps only inputs that run cleanly.
  find "$corpus" -type f ! -name 'crash-*' ! -name 'timeout-*' ! -name 'leak-*' -delete
  cp "$work/$name/merged"/* "$corpus/" 2>/dev/null || true
  local execs cov files bytes
  execs=$(grep -m1 '^stat::number_of_executed_units' "$work/$name/fuzz.log" | awk '{print $2}')
  cov=$(grep -E '^#[0-9]+.*(DONE|pulse|NEW|REDUCE)' "$work/$name/fuzz.log" | tail -1 |
        grep -oE 'cov: [0-9]+ ft: [0-9]+' || true)
  files=$(find "$corpus" -type f | wc -l)
  bytes=$(du -sb "$corpus" | cut -f1)
  printf '%-28s execs %-10s corpus %4d files %7d bytes  %s%s\n' "$name" "${execs:-?}" "$files" \
    "$bytes" "${cov:-cov: ?}" "$( ((status)) && echo "  FAILED (see $work/$name/fuzz.log)")"
  return "$status"
}
export -f fuzz_one
export build work runs seconds max_len

printf '%s\n' "${targets[@]}" | xargs -P "$jobs" -I{} bash -c 'fuzz_one "$1"' _ {}
