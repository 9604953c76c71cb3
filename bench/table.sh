#!/usr/bin/env bash
# The benchmark table of `make bench`: the machine loop's speed, its cost in
# host instructions (callgrind, which counts instructions, not seconds, and so
# does not move with the machine's load), and for generated sources of 3,000
# and 30,000 lines the whole-process time, host instructions and peak memory
# per line of drillasm assembling, linking and writing the assembled report.
#
#   bench/table.sh [BUILD_DIR]
set -eu
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$(realpath "${1:-$here/build}")
drill="$build/drillasm"
gen="$build/bench/drillasm_gen_source"
loop="$build/bench/bench_run_loop"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
have_valgrind=0
command -v valgrind >/dev/null 2>&1 && command -v callgrind_annotate >/dev/null 2>&1 && have_valgrind=1

row() { printf '| %-62s | %16s |\n' "$1" "$2"; }
now_ns() { date +%s%N; }

# The machine loop: the long run for the speed, the short one for the count.
ips="n/a"
per_instr="n/a (valgrind not installed)"
if [ -x "$loop" ]; then
  ips=$("$loop" --benchmark_filter='BM_RunLoop/1000/' --benchmark_format=json 2>/dev/null |
        sed -n 's/.*"emulated_instr_per_sec": \([0-9.e+]*\).*/\1/p' | head -1)
  ips=$(awk -v v="$ips" 'BEGIN { printf "%.0f M/s", v / 1e6 }')
  if [ "$have_valgrind" = 1 ]; then
    emulated=$("$loop" --benchmark_filter='BM_RunLoop/20/' --benchmark_format=json 2>/dev/null |
               sed -n 's/.*"emulated_instr_per_run": \([0-9.e+]*\).*/\1/p' | head -1)
    valgrind --tool=callgrind --callgrind-out-file="$work/loop.cg" "$loop" \
      --benchmark_filter='BM_RunLoop/20/' >/dev/null 2>&1
    run_ir=$(callgrind_annotate --inclusive=yes "$work/loop.cg" 2>/dev/null |
             grep -m1 'RunComet2(' | awk '{ gsub(",", "", $1); print $1 }')
    per_instr=$(awk -v ir="$run_ir" -v n="$emulated" 'BEGIN { printf "%.1f", ir / n }')
  fi
fi

# Whole-process figures of drillasm on a generated source.
printf '[Mode]\nLangStr=ENU\nLangInt=1\nFightFunc=NWW\n' > "$work/drillasm.ini"
printf 'T\tSTART\n\tRET\n\tEND\n' > "$work/tiny.cas"
run_drill() {  # file, extra command in front (may be empty)
  (cd "$work" && printf '\n1\n%s\n2\n123\n' "$1" | "${@:2}" "$drill" >/dev/null 2>&1)
}
peak_kb() {  # file
  (cd "$work" && printf '\n1\n%s\n2\n123\n' "$1" | /usr/bin/time -f '%M' -o "$work/peak" "$drill" >/dev/null 2>&1)
  cat "$work/peak"
}
base_kb=$(peak_kb tiny.cas)
declare -A figures
for programs in 3 30; do
  lines=$((programs * 1000))
  "$gen" "$programs" > "$work/big$programs.cas"
  best=""
  for _ in 1 2 3; do
    t0=$(now_ns); run_drill "big$programs.cas"; t1=$(now_ns)
    ms=$(( (t1 - t0) / 1000000 ))
    if [ -z "$best" ] || [ "$ms" -lt "$best" ]; then best=$ms; fi
  done
  figures[time$programs]="$best ms"
  kb=$(peak_kb "big$programs.cas")
  figures[mem$programs]=$(awk -v k="$kb" -v b="$base_kb" -v n="$lines" 'BEGIN { printf "%.0f B", (k - b) * 1024 / n }')
  if [ "$have_valgrind" = 1 ]; then
    (cd "$work" && printf '\n1\nbig%s.cas\n2\n123\n' "$programs" |
       valgrind --tool=callgrind --callgrind-out-file="$work/asm$programs.cg" "$drill" >/dev/null 2>&1)
    ir=$(callgrind_annotate "$work/asm$programs.cg" 2>/dev/null | grep -m1 'PROGRAM TOTALS' |
         awk '{ gsub(",", "", $1); print $1 }')
    figures[ir$programs]=$(awk -v ir="$ir" -v n="$lines" 'BEGIN { printf "%.0f", ir / n }')
  else
    figures[ir$programs]="n/a"
  fi
done

cli="n/a (drillasm-cli not built)"
if [ -x "$build/drillasm-cli" ]; then
  mkdir -p "$work/many"
  for i in $(seq 1 1000); do cp "$here/examples/src/pn1000.txt" "$work/many/p$i.txt"; done
  t0=$(now_ns)
  (cd "$work/many" && "$build/drillasm-cli" check ./*.txt >/dev/null 2>&1) || true
  t1=$(now_ns)
  cli="$(( (t1 - t0) / 1000000 )) ms"
fi

echo
row "Figure" "Value"
printf '|%s|%s|\n' "$(printf -- '-%.0s' {1..64})" "$(printf -- '-%.0s' {1..18})"
row "machine loop: emulated instructions per second" "$ips"
row "machine loop: host instructions per emulated instruction" "$per_instr"
for programs in 3 30; do
  lines=$((programs * 1000))
  n=$([ "$programs" = 3 ] && echo "3,000" || echo "30,000")
  row "$n lines: whole-process time (best of 3)" "${figures[time$programs]}"
  row "$n lines: host instructions per line (callgrind)" "${figures[ir$programs]}"
  row "$n lines: peak memory per line (max RSS over a tiny file)" "${figures[mem$programs]}"
done
row "drillasm-cli check over 1,000 files" "$cli"
