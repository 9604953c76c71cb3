#!/usr/bin/env bash
# Installs a build into a temporary root and builds its Debian package, then
# uses both as a learner would: the installed program started in an empty
# folder opens the guide of each language with item 10 and runs a sample;
# the package lists every file it should, and its programs run the same way.
#   tests/install_check.sh BUILD_DIR
set -euo pipefail

build=$(cd "${1:?usage: install_check.sh BUILD_DIR}" && pwd)
src=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "install check: $*" >&2; exit 1; }

# A fake editor that notes what it was asked to show.
cat > "$work/editor" <<'SH'
#!/bin/sh
printf '%s\n' "$1" >> "$EDITOR_LOG"
SH
chmod +x "$work/editor"

# Starts the program at $1 in a new empty folder with a bare environment:
# item 10, then the sample at $3 through item 1, in language $2 (0 Japanese,
# 1 English). Leaves the folder in $folder and the console in $folder.out.
learner() {
  local exe=$1 lang=$2 sample=$3
  folder=$(mktemp -d "$work/empty.XXXX")
  local name=ENU; [ "$lang" = 0 ] && name=JPN
  printf '[Mode]\nLangStr=%s\nLangInt=%s\n' "$name" "$lang" > "$folder/drillasm.ini"
  (cd "$folder" && printf '\n10\n\n1\n%s\n\n123\n' "$sample" |
     env -i PATH=/usr/bin:/bin HOME="$work" LANG=C.UTF-8 EDITOR="$work/editor" \
         EDITOR_LOG="$folder.log" "$exe" > "$folder.out" 2>&1) || fail "$exe ended with status $?"
  grep -q "Successfully Assembled!\|アセンブル成功" "$folder.out" || fail "the sample did not assemble: $(cat "$folder.out")"
  [ -f "$folder/aaResultantRegMry.txt" ] || fail "no resultant report in the learner's folder"
}

# Item 10 showed exactly the guide `$2` below root $1.
expect_guide() {
  local shown; shown=$(cat "$folder.log" 2>/dev/null || true)
  [ "$(realpath -m "$shown")" = "$(realpath -m "$1/$2")" ] || fail "item 10 showed '$shown', not $1/$2"
}

# ---- cmake --install into a temporary root ---------------------------------
root="$work/root"
DESTDIR="$root" cmake --install "$build" > /dev/null
prefix=$(sed -n 's/^CMAKE_INSTALL_PREFIX:PATH=//p' "$build/CMakeCache.txt")
top="$root$prefix"
before=$(cd "$root" && find . | sort)
for lang in 1 0; do
  learner "$top/bin/drillasm" "$lang" "$top/share/drillasm/examples/src/pn1000.txt"
  if [ "$lang" = 0 ]; then expect_guide "$top" share/doc/drillasm/help.ja.md
  else expect_guide "$top" share/doc/drillasm/help.md; fi
done
[ "$(cd "$root" && find . | sort)" = "$before" ] || fail "the program wrote beside its installed files"
"$top/bin/drillasm-cli" check "$top/share/drillasm/examples/src/pn1000.txt" > /dev/null ||
  fail "the installed drillasm-cli does not pass a sample"
for f in $(cd "$src" && git ls-files examples/src examples/errors examples/README.md 2>/dev/null ||
             (cd "$src" && find examples/src examples/errors -type f)); do
  [ -f "$top/share/drillasm/${f}" ] || fail "not installed: $f"
done

# ---- the Debian package ----------------------------------------------------
(cd "$build" && cpack -G DEB -B "$work/pkg" > "$work/cpack.log" 2>&1) || fail "cpack: $(cat "$work/cpack.log")"
deb=$(ls "$work"/pkg/*.deb)
contents=$(dpkg-deb --contents "$deb" | awk '{print $NF}')
for f in usr/bin/drillasm usr/bin/drillasm-cli \
         usr/share/doc/drillasm/help.md usr/share/doc/drillasm/help.ja.md usr/share/doc/drillasm/copyright \
         usr/share/man/man1/drillasm.1.gz usr/share/man/man1/drillasm-cli.1.gz \
         usr/share/drillasm/examples/README.md usr/share/drillasm/examples/src/pn100.txt \
         usr/share/drillasm/examples/src/pn1000.txt usr/share/drillasm/examples/src/list792j.txt \
         usr/share/drillasm/examples/src/pn3035.txt; do
  grep -qx "\./$f" <<< "$contents" || fail "the package lacks $f"
done
grep -q "tests\|bench\|drillasm_tests" <<< "$(grep '/bin/' <<< "$contents")" && fail "the package carries a test program"
dpkg-deb --field "$deb" Depends | grep -q libedit || fail "the package does not depend on libedit"
pkgroot="$work/pkgroot"
dpkg-deb -x "$deb" "$pkgroot"
learner "$pkgroot/usr/bin/drillasm" 0 "$pkgroot/usr/share/drillasm/examples/src/pn100.txt"
expect_guide "$pkgroot/usr" share/doc/drillasm/help.ja.md
for page in drillasm drillasm-cli; do
  zcat "$pkgroot/usr/share/man/man1/$page.1.gz" | grep -q '^\.TH' || fail "$page.1 is not a manual page"
done
echo "install check: installed and packaged programs find their guides and run a sample ($(basename "$deb"))"
