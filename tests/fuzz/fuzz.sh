#!/usr/bin/env bash
# Seeds, runs, minimizes and measures the fuzz targets of tests/fuzz.
# See README.md, "Fuzzing".
#
#   fuzz.sh run BUILD SECONDS [TARGET...]
#       each target over its corpus (the committed one and the seeds), then
#       fuzzing for SECONDS; new inputs go into BUILD/corpus/TARGET, findings
#       into BUILD/findings/TARGET; a table of the figures at the end
#   fuzz.sh minimize BUILD [TARGET...]
#       the committed corpus and BUILD/corpus/TARGET merged into a fresh
#       folder (-merge=1) that replaces tests/fuzz/corpus/TARGET; the
#       regression inputs (regress-*) stay
#   fuzz.sh coverage COVBUILD BUILD [TARGET...]
#       the coverage build of the targets over every corpus (the seeds, the
#       committed corpus and BUILD/corpus/TARGET): the lines of src/ reached,
#       in all and by subsystem; BUILD, the fuzzing build, makes the seeds
#   fuzz.sh seed BUILD TARGET DIR
#       only the seeds of a target into DIR
#
# The seeds are made afresh at each run from the files that are there then:
# the sample programs (examples/src, examples/errors) and the small programs
# and settings files of tests/fuzz/seeds.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
all_targets=(source machine settings cli decode)
# The separator of the parts of an input of the cli target.
separator=$'\n====\n'

die() {
  echo "fuzz.sh: $*" >&2
  exit 2
}

abs() { (cd "$1" && pwd); }

max_len() {
  case $1 in
    source | cli) echo 16384 ;;
    machine | decode) echo 4096 ;;
    settings) echo 2048 ;;
  esac
}

dict_of() {
  case $1 in
    source | cli) echo "$here/casl2.dict" ;;
    settings) echo "$here/settings.dict" ;;
  esac
}

# The options of every run of a target.
options() {
  local t=$1 build=$2
  local o=(-max_len="$(max_len "$t")" -timeout=1 -rss_limit_mb=2048 -detect_leaks=1
           -artifact_prefix="$build/findings/$t/")
  local d
  d=$(dict_of "$t")
  [ -n "$d" ] && o+=(-dict="$d")
  printf '%s\n' "${o[@]}"
}

source_files() {
  local d
  for d in "$root/examples/src" "$root/examples/errors" "$here/seeds/source"; do
    [ -d "$d" ] && find "$d" -type f
  done | LC_ALL=C sort
}

# FILE with the byte BYTE in front, into OUT.
prefixed() {
  local out=$1 byte=$2 file=$3
  { printf "\\$(printf '%03o' "$byte")"; cat "$file"; } >"$out"
}

seed() {
  local t=$1 build=$2 dir=$3
  rm -rf "$dir"
  mkdir -p "$dir"
  local files=()
  mapfile -t files < <(source_files)
  local i k f name
  case $t in
    source)
      # Byte 0: the mode k, the language, and a watched run for k >= 3.
      for i in "${!files[@]}"; do
        f=${files[$i]}
        name=$i-$(basename "$f")
        for k in 0 1 2 3 4 5; do
          prefixed "$dir/$name.$k" $((k + 6 * (k % 2) + 12 * (k >= 3))) "$f"
        done
      done
      ;;
    cli)
      # Byte 0: the mode k, the language k % 2 and the command k % 3.
      for i in "${!files[@]}"; do
        f=${files[$i]}
        name=$i-$(basename "$f")
        for k in 0 1 2 3 4 5; do
          prefixed "$dir/$name.$k" $((k + 6 * (k % 2 + 2 * (k % 3)))) "$f"
        done
        # Two files for check, and a run with lines for IN.
        if [ $((i + 1)) -lt ${#files[@]} ]; then
          { printf '\006'; cat "$f"; printf '%s' "$separator"; cat "${files[$((i + 1))]}"; } >"$dir/$name.pair"
        fi
        { printf '\022'; cat "$f"; printf '%s%s12\nhello\n' "$separator" "$separator"; } >"$dir/$name.input"
      done
      ;;
    machine)
      [ -x "$build/fuzz/drillasm_fuzz_machine_seeds" ] || die "$build/fuzz/drillasm_fuzz_machine_seeds is not built"
      (cd "$dir" && "$build/fuzz/drillasm_fuzz_machine_seeds" "$dir" "${files[@]}" 2>/dev/null)
      ;;
    settings)
      cp "$here"/seeds/settings/* "$dir"/
      ;;
    decode)
      for i in "${!files[@]}"; do cp "${files[$i]}" "$dir/$i-$(basename "${files[$i]}")"; done
      cp "$here"/seeds/settings/* "$dir"/
      ;;
    *) die "no target $t" ;;
  esac
}

# The corpus folders of a target: the committed one (when it has files) and
# the seeds.
corpus_dirs() {
  local t=$1 build=$2
  if [ -d "$here/corpus/$t" ] && [ -n "$(ls -A "$here/corpus/$t")" ]; then echo "$here/corpus/$t"; fi
  echo "$build/seeds/$t"
}

# Prints the figures of a log: executions, executions per second, cov, ft,
# the corpus (inputs/size), the slowest input and the peak memory.
figures() {
  local log=$1
  local done_line execs rate slowest rss cov ft corp
  done_line=$(grep -E '^#[0-9]+[[:space:]]+DONE' "$log" | tail -1 || true)
  cov=$(sed -nE 's/.* cov: ([0-9]+).*/\1/p' <<<"$done_line")
  ft=$(sed -nE 's/.* ft: ([0-9]+).*/\1/p' <<<"$done_line")
  corp=$(sed -nE 's/.* corp: ([0-9]+\/[0-9]+[a-zA-Z]*).*/\1/p' <<<"$done_line")
  execs=$(sed -nE 's/^stat::number_of_executed_units: *([0-9]+)/\1/p' "$log")
  rate=$(sed -nE 's/^stat::average_exec_per_sec: *([0-9]+)/\1/p' "$log")
  slowest=$(sed -nE 's/^stat::slowest_unit_time_sec: *([0-9]+)/\1/p' "$log")
  rss=$(sed -nE 's/^stat::peak_rss_mb: *([0-9]+)/\1/p' "$log")
  echo "${execs:-?} ${rate:-?} ${cov:-?} ${ft:-?} ${corp:-?} ${slowest:-?} ${rss:-?}"
}

# What a failed run leaves: the end of its log and the input it saved.
report_failure() {
  local t=$1 log=$2 build=$3
  echo "!! fuzz_$t failed; the end of $log:" >&2
  tail -n 40 "$log" >&2
  echo "!! inputs saved in $build/findings/$t/:" >&2
  ls -l "$build/findings/$t/" >&2 || true
  echo "!! reproduce: $build/fuzz/fuzz_$t INPUT; reduce: $build/fuzz/fuzz_$t -minimize_crash=1 -runs=100000 INPUT" >&2
}

cmd_run() {
  [ $# -ge 2 ] || die "usage: fuzz.sh run BUILD SECONDS [TARGET...]"
  local build seconds
  build=$(abs "$1")
  seconds=$2
  shift 2
  local targets=("$@")
  [ ${#targets[@]} -gt 0 ] || targets=("${all_targets[@]}")
  local failed=0 t rows=()
  for t in "${targets[@]}"; do
    local bin=$build/fuzz/fuzz_$t
    [ -x "$bin" ] || die "$bin is not built"
    mkdir -p "$build/corpus/$t" "$build/findings/$t" "$build/logs"
    seed "$t" "$build" "$build/seeds/$t"
    local opts dirs
    mapfile -t opts < <(options "$t" "$build")
    mapfile -t dirs < <(corpus_dirs "$t" "$build")
    local log=$build/logs/$t.corpus.log
    echo "== fuzz_$t: the corpus, $(find "${dirs[@]}" -type f | wc -l | tr -d ' ') inputs"
    if ! "$bin" "${opts[@]}" -runs=0 "${dirs[@]}" >"$log" 2>&1; then
      report_failure "$t" "$log" "$build"
      failed=1
      continue
    fi
    log=$build/logs/$t.log
    echo "== fuzz_$t: fuzzing for $seconds s"
    if ! "$bin" "${opts[@]}" -max_total_time="$seconds" -print_final_stats=1 "$build/corpus/$t" "${dirs[@]}" >"$log" 2>&1; then
      report_failure "$t" "$log" "$build"
      failed=1
      continue
    fi
    rows+=("$t $(figures "$log") $(find "$build/corpus/$t" -type f | wc -l | tr -d ' ')")
  done
  echo
  echo "corpus: libFuzzer's corpus at the end (inputs/size); kept: the inputs in $build/corpus/TARGET"
  printf '%-9s %12s %8s %7s %8s %14s %8s %7s %7s\n' target executions exec/s cov ft corpus slowest rss-MB kept
  local r
  for r in "${rows[@]}"; do
    # shellcheck disable=SC2086
    printf '%-9s %12s %8s %7s %8s %14s %7ss %7s %7s\n' $r
  done
  [ "$failed" = 0 ] || die "a target failed"
}

cmd_minimize() {
  [ $# -ge 1 ] || die "usage: fuzz.sh minimize BUILD [TARGET...]"
  local build
  build=$(abs "$1")
  shift
  local targets=("$@")
  [ ${#targets[@]} -gt 0 ] || targets=("${all_targets[@]}")
  local t
  for t in "${targets[@]}"; do
    local bin=$build/fuzz/fuzz_$t out=$build/minimized/$t committed=$here/corpus/$t
    [ -x "$bin" ] || die "$bin is not built"
    seed "$t" "$build" "$build/seeds/$t"
    rm -rf "$out"
    mkdir -p "$out" "$committed" "$build/corpus/$t"
    # The seeds go in first, so that only inputs that reach more than they
    # do are kept; they are made afresh at every run and are not committed.
    cp "$build/seeds/$t"/* "$out"/ 2>/dev/null || true
    local seeds
    seeds=$(ls "$out" | sort)
    local opts
    mapfile -t opts < <(options "$t" "$build")
    # Edges alone decide (not how often each is taken), which keeps the
    # corpus to a few hundred inputs.
    "$bin" "${opts[@]}" -merge=1 -use_counters=0 "$out" "$committed" "$build/corpus/$t" \
      >"$build/logs/$t.merge.log" 2>&1 ||
      { tail -n 20 "$build/logs/$t.merge.log" >&2; die "the merge of $t failed"; }
    (cd "$out" && comm -12 <(ls | sort) <(echo "$seeds") | xargs -r rm -f)
    find "$committed" -type f ! -name 'regress-*' -delete
    cp "$out"/* "$committed"/ 2>/dev/null || true
    echo "$t: $(find "$committed" -type f | wc -l | tr -d ' ') files, $(du -sk "$committed" | cut -f1) KB in $committed"
  done
}

cmd_coverage() {
  [ $# -ge 2 ] || die "usage: fuzz.sh coverage COVBUILD BUILD [TARGET...]"
  local cov build
  cov=$(abs "$1")
  build=$(abs "$2")
  shift 2
  local targets=("$@")
  [ ${#targets[@]} -gt 0 ] || targets=("${all_targets[@]}")
  local profdata=llvm-profdata-14 llvmcov=llvm-cov-14
  command -v $profdata >/dev/null || die "$profdata is not installed (package llvm-14)"
  rm -rf "$cov/profiles"
  mkdir -p "$cov/profiles" "$cov/logs"
  local t
  for t in "${targets[@]}"; do mkdir -p "$cov/findings/$t"; done
  local objects=()
  for t in "${targets[@]}"; do
    local bin=$cov/fuzz/fuzz_$t
    [ -x "$bin" ] || die "$bin is not built"
    # The seed maker is a program of the fuzzing build.
    seed "$t" "$build" "$cov/seeds/$t"
    local dirs
    mapfile -t dirs < <(corpus_dirs "$t" "$cov")
    [ -d "$build/corpus/$t" ] && dirs+=("$build/corpus/$t")
    local opts
    mapfile -t opts < <(options "$t" "$cov")
    echo "== fuzz_$t over $(find "${dirs[@]}" -type f | wc -l | tr -d ' ') inputs"
    # The timeout is wider: the coverage build is slower, and this pass
    # measures, it does not judge.
    LLVM_PROFILE_FILE="$cov/profiles/$t-%p.profraw" "$bin" "${opts[@]}" -timeout=10 -runs=0 "${dirs[@]}" \
      >"$cov/logs/$t.coverage.log" 2>&1 || { tail -n 20 "$cov/logs/$t.coverage.log" >&2; die "fuzz_$t failed"; }
    objects+=(-object "$bin")
  done
  $profdata merge -sparse "$cov"/profiles/*.profraw -o "$cov/fuzz.profdata"
  local sources=()
  mapfile -t sources < <(find "$root/src" -name '*.cpp' -o -name '*.h' | grep -v "^$root/src/main\.cpp$" | LC_ALL=C sort)
  # The first object is the binary, the rest follow -object.
  $llvmcov report "${objects[1]}" "${objects[@]:2}" -instr-profile="$cov/fuzz.profdata" "${sources[@]}" \
    >"$cov/coverage.txt"
  echo
  echo "Lines of src/ (without src/main.cpp) reached by the fuzz corpus, by subsystem:"
  awk -v root="$root/src/" '
    $1 ~ /^\// || $1 ~ /\.(cpp|h)$/ {
      f = $1; sub(root, "", f); sub(/^src\//, "", f)
      n = split(f, parts, "/"); sys = (n > 1) ? parts[1] : "(top)"
      lines[sys] += $8; missed[sys] += $9; all += $8; allMissed += $9
    }
    END {
      for (s in lines) printf "  %-10s %6d lines %6d reached %6.1f%%\n", s, lines[s], lines[s] - missed[s],
                                  lines[s] ? 100 * (lines[s] - missed[s]) / lines[s] : 0
      printf "  %-10s %6d lines %6d reached %6.1f%%\n", "total", all, all - allMissed, all ? 100 * (all - allMissed) / all : 0
    }' "$cov/coverage.txt" | sort -k1,1 | awk '/ total /{t=$0; next} {print} END {print t}'
  echo "(per file: $cov/coverage.txt; html: $llvmcov show ${objects[1]} ${objects[*]:2} -instr-profile=$cov/fuzz.profdata -format=html -output-dir=DIR)"
}

# Each target works in a scratch folder of its own inside this one, which
# goes at the end, with what a target that stopped on a finding left.
scratch_base=/tmp
[ -w /dev/shm ] && scratch_base=/dev/shm
TMPDIR=$(mktemp -d "${TMPDIR:-$scratch_base}/drillasm-fuzz-run-XXXXXX")
export TMPDIR
trap 'rm -rf "$TMPDIR"' EXIT

[ $# -ge 1 ] || die "usage: fuzz.sh run|minimize|coverage|seed ..."
command=$1
shift
case $command in
  run) cmd_run "$@" ;;
  minimize) cmd_minimize "$@" ;;
  coverage) cmd_coverage "$@" ;;
  seed)
    [ $# -eq 3 ] || die "usage: fuzz.sh seed BUILD TARGET DIR"
    mkdir -p "$3"
    seed "$2" "$(abs "$1")" "$(abs "$3")"
    ;;
  *) die "no command $command" ;;
esac
