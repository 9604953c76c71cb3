#!/usr/bin/env bash
# Golden outputs of the benchmark programs: runs a drillasm binary on the
# generated sources and the samples in every mode and both languages, and
# keeps the console text (the times masked) and both reports, so that two
# builds can be compared byte for byte:
#
#   bench/golden.sh OLD_BINARY /tmp/golden-old
#   bench/golden.sh build/drillasm /tmp/golden-new
#   diff -r /tmp/golden-old /tmp/golden-new
set -euo pipefail
bin=$(realpath "$1")
out=$(realpath -m "$2")
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
gen="${GEN:-$here/build/bench/drillasm_gen_source}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/src" "$out"
"$gen" 3 > "$work/big3.cas"
"$gen" 30 > "$work/big30.cas"
cp "$here"/examples/src/*.txt "$work/src/"

# name, input after the first pause
cases=("big3|1\nbig3.cas\n2\n123\n" "big30|1\nbig30.cas\n2\n123\n")
for f in "$here"/examples/src/*.txt; do
  n=$(basename "$f" .txt)
  cases+=("$n|1\nsrc/$n.txt\n1\n\n123\n")
done

for mode in NWW WP AP NA NaW NH; do
  for lang in 0 1; do
    for c in "${cases[@]}"; do
      name=${c%%|*}
      input=${c#*|}
      d="$out/$mode-$lang/$name"
      mkdir -p "$d"
      rm -f "$work"/aa*.txt
      printf '[Mode]\nLangInt=%s\nLangStr=%s\nFightFunc=%s\n' "$lang" "$([ "$lang" = 0 ] && echo JPN || echo ENU)" \
        "$mode" > "$work/drillasm.ini"
      (cd "$work" && printf "\n$input" | SOURCE_DATE_EPOCH=0 timeout 20 "$bin" 2>&1 || true) |
        sed -E 's/[0-9]+(\.[0-9]+)? (msec|sec)|1 micro second or less/<t>/g' > "$d/console.txt"
      for r in aaAssembledRegMry.txt aaResultantRegMry.txt; do
        [ -f "$work/$r" ] && cp "$work/$r" "$d/$r"
      done
    done
  done
done
echo "golden outputs of $bin in $out"
