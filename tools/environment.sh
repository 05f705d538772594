# Sourced by ./test and ./demo: what the machine must have, and where things run. Needs to be root
# where something is missing that only root can install.

repository=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$repository/build
# Survives a cleaned build tree: the 32-bit root takes a minute to make.
cache=${QVRT_CACHE:-/var/cache/qvrtlib}
root32=$cache/wine32
# Where this checkout appears inside that root; several may at the same time.
inside32=/qvrt/$(printf %s "$repository" | cksum | cut -d' ' -f1)

packages=(cmake ninja-build g++ clang libclang-rt-14-dev llvm-14 clang-format-14 clang-tidy-14
  python3 git ccache xz-utils
  g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix mingw-w64-tools wine wine64 libwine-dev
  googletest libgtest-dev debootstrap xvfb xauth xdotool imagemagick ca-certificates
  python3-markdown python3-selenium wixl msitools faketime chromium chromium-driver fonts-liberation fonts-wine dynamite libstorm-dev
  cabextract gcab)

say() { printf '\n== %s\n' "$*"; }
die() { printf 'error: %s\n' "$*" >&2; exit 1; }

install_packages() {
  local missing=()
  local package
  for package in "${packages[@]}"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  say "installing packages: ${missing[*]}"
  [ "$(id -u)" -eq 0 ] || die "run once as root, or install: ${missing[*]}"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends "${missing[@]}" \
    > "$build/apt.log" 2>&1 || { tail -20 "$build/apt.log"; die "apt-get failed"; }
}

# The 32-bit Wine lives in a root of its own: Debian's security archive has no usable i386 index to
# install it beside the host's packages.
packages32=(wine wine32 xvfb xauth fonts-liberation)

prepare_root32() {
  if [ "$(cat "$root32/.complete" 2> /dev/null)" != "${packages32[*]}" ]; then
    say "making a 32-bit Debian with Wine in $root32 (about two minutes, once)"
    [ "$(id -u)" -eq 0 ] || die "the 32-bit root must be made by root"
    if [ ! -e "$root32/.complete" ]; then
      rm -rf "$root32"
      mkdir -p "$root32"
      debootstrap --arch=i386 --variant=minbase bookworm "$root32" > "$build/debootstrap.log" 2>&1 ||
        { tail -20 "$build/debootstrap.log"; die "debootstrap failed"; }
    fi
    chroot "$root32" sh -c "apt-get update -qq &&
      DEBIAN_FRONTEND=noninteractive apt-get install -qq -y --no-install-recommends ${packages32[*]}" \
      > "$build/wine32.log" 2>&1 ||
      { tail -20 "$build/wine32.log"; die "installing the 32-bit Wine failed"; }
    echo "${packages32[*]}" > "$root32/.complete"
  fi
  mountpoint -q "$root32/proc" || mount -t proc proc "$root32/proc"
  mkdir -p "$root32$inside32"
  # A mount of an earlier checkout in the same place shows the folder that was deleted.
  while mountpoint -q "$root32$inside32" && ! [ "$root32$inside32" -ef "$repository" ]; do
    umount -l "$root32$inside32"
  done
  mountpoint -q "$root32$inside32" || mount --bind "$repository" "$root32$inside32"
}

# in_prefix x64|x86 COMMAND ARGUMENT...: a program of that Wine, with its own prefix below the build
# tree (of another name where QVRT_PREFIX gives one). The working folder is the repository; paths may
# be given relative to it.
in_prefix() {
  local bits=$1 prefix=build/${QVRT_PREFIX:-wine}-$1
  shift
  local settings=(WINEDEBUG="${WINEDEBUG:--all}" WINEDLLOVERRIDES=mscoree,mshtml,winemenubuilder.exe=
    LC_ALL="${QVRT_LOCALE:-C.UTF-8}" TZ="${QVRT_ZONE:-UTC0}" HOME=/tmp OANOCACHE="${OANOCACHE:-}")
  [ -n "${OANOCACHE:-}" ] || unset 'settings[5]'
  if [ "$bits" = x64 ]; then
    (cd "$repository" &&
      env "${settings[@]}" WINEPREFIX="$repository/$prefix" ${DISPLAY:+DISPLAY="$DISPLAY"} "$@")
  else
    chroot "$root32" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin "${settings[@]}" WINEARCH=win32 \
      WINEPREFIX="$inside32/$prefix" sh -c "cd $inside32 && exec \"\$@\"" sh "$@"
  fi
}

# run_wine x64|x86 PROGRAM ARGUMENT...
run_wine() {
  local bits=$1
  shift
  in_prefix "$bits" wine "$@"
}

# fresh_prefix x64|x86: a new prefix with no display (windows and messages work without one).
fresh_prefix() {
  local bits=$1
  local folder=$build/${QVRT_PREFIX:-wine}-$bits
  say "making a Wine prefix for $bits"
  rm -rf "$folder"
  mkdir -p "$folder"
  in_prefix "$bits" wineboot -i > "$build/wineboot-$bits.log" 2>&1 ||
    { tail -5 "$build/wineboot-$bits.log"; die "wineboot failed"; }
  run_wine "$bits" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f > /dev/null 2>&1
  # The desktop that stands already has looked for a display, and outlives its processes: only a
  # new server makes another.
  in_prefix "$bits" wineserver -k || true
  in_prefix "$bits" wineserver -w
  touch "$folder/.complete"
}

# A throw-away prefix with the server in it.
prepare_prefix() {
  local bits=$1
  [ -e "$build/${QVRT_PREFIX:-wine}-$bits/.complete" ] || fresh_prefix "$bits"
  # The session lasts until end_session: a program that starts in the moment in which the session
  # of the one before it ends would find itself without the system's services.
  in_prefix "$bits" wineserver -p60 2> /dev/null || true
  run_wine "$bits" regsvr32 /s "build\\$bits\\QvRtLibOle.dll" ||
    die "the $bits server did not register"
}

end_session() {
  in_prefix "$1" wineserver -k || true
}

# Several builds of the same sources, in whatever folder, share their objects.
export CCACHE_BASEDIR=$repository CCACHE_NOHASHDIR=1 CCACHE_SLOPPINESS=time_macros

configure_preset() {
  local preset=$1
  [ -e "$build/$preset/build.ninja" ] ||
    (cd "$repository" && cmake --preset "$preset" > "$build/cmake-$preset.log" 2>&1) ||
    { tail -20 "$build/cmake-$preset.log"; die "configuring $preset failed"; }
}

# build_preset PRESET [TARGET...]: all targets where none is named.
build_preset() {
  local preset=$1
  shift
  say "building $preset"
  configure_preset "$preset"
  cmake --build "$build/$preset" ${*:+--target "$@"} > "$build/build-$preset.log" 2>&1 ||
    { grep -E 'error:|undefined|FAILED' -A3 "$build/build-$preset.log" | head -60; die "building $preset failed"; }
}
