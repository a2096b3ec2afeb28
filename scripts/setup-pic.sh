#!/usr/bin/env bash
# Sets up the PIC toolchain that robot programs are compiled with and simulated in:
#   - gputils (assembler, linker, librarian, the chips' .inc files) and gpsim, from Debian;
#   - SDCC's pic14 port, built from Debian's sdcc source package (Debian's binary sdcc leaves
#     the PIC ports out) into a prefix of its own, with only that port enabled.
# The chip headers and device library are generated here from gputils' .inc files: their licence
# ties them to the chips, so they are made on the machine that uses them and never stored.
#
#   KESTRONE_PIC_PREFIX  where the compiler goes (default /opt/kestrone-pic)
#   TMPDIR               scratch space for the build (about 250 MB while it runs)
#
# Afterwards:  $KESTRONE_PIC_PREFIX/bin/sdcc -mpic14 -p16f877a --use-non-free prog.c
# A second run that finds everything in place only checks it.
set -euo pipefail

prefix=${KESTRONE_PIC_PREFIX:-/opt/kestrone-pic}
chip=16f877a
sdcc_version=4.2.0

say() { echo "setup-pic: $*"; }
die() {
  echo "setup-pic: FAILED: $*" >&2
  exit 1
}

sudo=""
[ "$(id -u)" -eq 0 ] || sudo=sudo

sdcc=$prefix/bin/sdcc
runtime_lib=$prefix/share/sdcc/lib/pic14/libsdcc.lib
chip_header=$prefix/share/sdcc/non-free/include/pic14/pic$chip.h
chip_lib=$prefix/share/sdcc/non-free/lib/pic14/pic$chip.lib

install_packages() {
  local missing=() p
  for p in "$@"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
  done
  ((${#missing[@]})) || return 0
  say "installing ${missing[*]}"
  $sudo apt-get update -qq || die "apt-get update failed"
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null ||
    die "could not install ${missing[*]}"
}

# Compiles a small program for the chip: proves compiler, runtime library, header and device
# library work together, and that the compiler says nothing about our use of them.
smoke_test() {
  local dir out
  dir=$(mktemp -d "${TMPDIR:-/tmp}/kestrone-pic-check.XXXXXX")
  cat >"$dir/check.c" <<'EOF'
#include <pic16regs.h>
static unsigned int scaled(unsigned char a) { return (unsigned int)a * 3u; }
void main(void)
{
    TRISD = 0;
    PORTD = (unsigned char)(scaled(PORTB) >> 1);
    for (;;) {
    }
}
EOF
  if ! out=$(cd "$dir" && "$sdcc" -mpic14 -p$chip --use-non-free check.c 2>&1) || [ ! -s "$dir/check.hex" ]; then
    echo "$out" >&2
    rm -rf "$dir"
    die "$sdcc cannot build a program for the $chip"
  fi
  rm -rf "$dir"
  # gplink always names the linker script it takes; anything else is worth showing.
  out=$(grep -v 'Using default linker script' <<<"$out" || true)
  [ -z "$out" ] || say "note: the compiler said: $out"
}

toolchain_in_place() {
  [ -x "$sdcc" ] && [ -s "$runtime_lib" ] && [ -s "$chip_header" ] && [ -s "$chip_lib" ]
}

# apt-get source needs a deb-src line; Debian 12 ships only deb ones. Add the same archives as
# sources, in a file of our own so that the system's own lists stay as they are.
enable_sources() {
  if grep -Eqs '^[[:space:]]*(deb-src[[:space:]]|Types:.*deb-src)' /etc/apt/sources.list \
    /etc/apt/sources.list.d/*.list /etc/apt/sources.list.d/*.sources; then
    return 0
  fi
  local list
  if [ -f /etc/apt/sources.list.d/debian.sources ]; then
    list=/etc/apt/sources.list.d/kestrone-pic-src.sources
    sed 's/^Types:[[:space:]]*deb[[:space:]]*$/Types: deb-src/' /etc/apt/sources.list.d/debian.sources | $sudo tee "$list" >/dev/null
  elif [ -f /etc/apt/sources.list ]; then
    list=/etc/apt/sources.list.d/kestrone-pic-src.list
    sed -n 's/^[[:space:]]*deb[[:space:]]/deb-src /p' /etc/apt/sources.list | $sudo tee "$list" >/dev/null
  else
    die "no apt sources found to add a deb-src line to"
  fi
  grep -q 'deb-src' "$list" || die "found no deb archive to take sources from ($list is empty)"
  say "added source archives in $list"
  $sudo apt-get update -qq || die "apt-get update failed"
}

# Writes the header and the device library source of a chip from gputils' p<chip>.inc.
# The generator wants a gputils source tree; it reads that tree's processor table only for
# chips without configuration words, so an empty table stands in for it.
make_chip_files() {
  local src=$1 chip_name=$2 out=$3 stub=$4
  if [ ! -f "$stub/libgputils/gpprocessor.c" ]; then
    mkdir -p "$stub/libgputils"
    printf 'static struct px pics[] = {\n};\n' >"$stub/libgputils/gpprocessor.c"
  fi
  [ -f "$inc_dir/p$chip_name.inc" ] || die "gputils has no p$chip_name.inc in $inc_dir"
  perl "$src/support/scripts/cinc2h.pl" -p "$chip_name" -cb -nt -gp "$stub" -I "$inc_dir" -o "$out" >/dev/null ||
    die "cinc2h.pl failed for the $chip_name"
  [ -s "$out/pic14/header/pic$chip_name.h" ] && [ -s "$out/pic14/device/pic$chip_name.c" ] ||
    die "cinc2h.pl wrote no header or device file for the $chip_name"
}

configure_options() {
  local src=$1 help opt
  help=$("$src/configure" --help)
  local wanted=(--disable-ucsim --disable-sdcdb --disable-non-free --disable-packihx)
  for port in mcs51 z80 z180 r2k r2ka r3ka sm83 tlcs90 ez80_z80 z80n ds390 ds400 pic16 hc08 s08 stm8 \
    pdk13 pdk14 pdk15 mos6502; do
    wanted+=("--disable-$port-port")
  done
  for opt in "${wanted[@]}"; do
    grep -q -- "$opt\b" <<<"$help" && echo "$opt"
  done
  return 0
}

build_sdcc() {
  local work=$1 src chips c
  say "fetching Debian's sdcc source package"
  enable_sources
  (cd "$work" && apt-get source -qq "sdcc" >apt-source.log 2>&1) || {
    cat "$work/apt-source.log" >&2
    die "apt-get source sdcc failed"
  }
  src=$(find "$work" -maxdepth 1 -type d -name 'sdcc-*' | head -1)
  [ -n "$src" ] || die "apt-get source unpacked no sdcc-* folder in $work"
  grep -qx "$sdcc_version" "$src/.version" 2>/dev/null ||
    die "expected SDCC $sdcc_version, the source is $(cat "$src/.version" 2>/dev/null || echo unknown)"

  # The runtime library is compiled for the chips that its configure script names; their
  # headers must be in place before make, or the library build fails inside a make that passes.
  mapfile -t chips < <(sed -n 's/.*ARCH:-\(1[0-9a-z]*\)}.*/\1/p' "$src/device/lib/pic14/configure.ac")
  ((${#chips[@]})) || die "found no chip names in device/lib/pic14/configure.ac"
  mkdir -p "$src/device/non-free/include/pic14"
  for c in "${chips[@]}"; do
    say "generating the header of the $c for the runtime library"
    make_chip_files "$src" "$c" "$work/chips" "$work/gputils-stub"
    cp "$work/chips/pic14/header/pic$c.h" "$src/device/non-free/include/pic14/"
  done

  say "configuring (pic14 port only) into $prefix"
  mapfile -t opts < <(configure_options "$src")
  (cd "$src" && ./configure --prefix="$prefix" "${opts[@]}" >"$work/configure.log" 2>&1) || {
    tail -30 "$work/configure.log" >&2
    die "configure failed (log: $work/configure.log)"
  }
  # Its timestamp after unpacking would make the sub-make try to regenerate it.
  touch "$src/device/lib/pic14/config.h.in"

  say "building with $(nproc) jobs (a few minutes; log: $work/make.log)"
  (cd "$src" && make -j"$(nproc)" >"$work/make.log" 2>&1) || {
    tail -30 "$work/make.log" >&2
    die "make failed (log: $work/make.log)"
  }
  [ -n "$(find "$src/device/lib" -path '*pic14*' -name libsdcc.lib -size +0)" ] || {
    grep -n -i 'error' "$work/make.log" | tail -20 >&2
    die "make built no pic14 libsdcc.lib (log: $work/make.log)"
  }
  say "installing into $prefix"
  (cd "$src" && $sudo make install >"$work/install.log" 2>&1) || {
    tail -30 "$work/install.log" >&2
    die "make install failed (log: $work/install.log)"
  }
  [ -s "$runtime_lib" ] || die "make install left no $runtime_lib"
}

install_chip() {
  local work=$1 src
  src=$(find "$work" -maxdepth 1 -type d -name 'sdcc-*' | head -1)
  if [ -z "$src" ]; then
    # The compiler is in place but the chip's files are not: only the generator is needed.
    enable_sources
    (cd "$work" && apt-get source -qq --download-only sdcc >/dev/null 2>&1 && dpkg-source --skip-patches -x sdcc_*.dsc >/dev/null 2>&1) ||
      die "could not fetch the sdcc source for its header generator"
    src=$(find "$work" -maxdepth 1 -type d -name 'sdcc-*' | head -1)
  fi
  say "generating the $chip header and device library"
  make_chip_files "$src" "$chip" "$work/chips" "$work/gputils-stub"
  local dev=$work/chips/pic14/device
  (cd "$dev" && "$sdcc" -mpic14 -p$chip --use-non-free -c "pic$chip.c" -I "$work/chips/pic14/header" >/dev/null &&
    gplib -c "pic$chip.lib" "pic$chip.o") || die "could not build the $chip device library"
  $sudo install -d "$(dirname "$chip_header")" "$(dirname "$chip_lib")"
  $sudo install -m 644 "$work/chips/pic14/header/pic$chip.h" "$chip_header"
  $sudo install -m 644 "$dev/pic$chip.lib" "$chip_lib"
}

main() {
  install_packages gputils gpsim
  inc_dir=/usr/share/gputils/header
  if toolchain_in_place; then
    smoke_test
    say "in place: $sdcc ($("$sdcc" -v | head -1)), gpsim $(dpkg-query -W -f='${Version}' gpsim)"
    return 0
  fi

  local start=$SECONDS work
  install_packages build-essential bison flex libboost-dev zlib1g-dev texinfo dpkg-dev perl
  work=$(mktemp -d "${TMPDIR:-/tmp}/kestrone-pic-build.XXXXXX")
  say "scratch folder $work"
  if [ ! -x "$sdcc" ] || [ ! -s "$runtime_lib" ]; then
    build_sdcc "$work"
  fi
  install_chip "$work"
  smoke_test
  rm -rf "$work"
  say "done in $((SECONDS - start)) s: $sdcc -mpic14 -p$chip --use-non-free"
}

main "$@"
