# Sourced by the scripts beside it: strict mode, the project's folder, and a compiler cache if any.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=${TOOLDB_JOBS:-$(nproc)}

# Objects are the same in whatever folder they are built, so one cache serves every preset of a kind.
if command -v ccache >/dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
  export CMAKE_C_COMPILER_LAUNCHER=${CMAKE_C_COMPILER_LAUNCHER-ccache}
  export CCACHE_NOHASHDIR=1
fi

fail() {
  echo "${0##*/}: $*" >&2
  exit 1
}

# Runs a command without its output; shows all of it when the command fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 || status=$?
  [ "$status" = 0 ] || cat "$log" >&2
  rm -f "$log"
  return "$status"
}

# Tests write thousands of small files and flush each of them, which takes a tenth of the time in
# memory: they go there, unless TMPDIR is set, when there is room, and programs may run from there.
keep_temporary_files_in_memory() {
  local memory=/dev/shm kilobytes
  kilobytes=$(df --output=avail "$memory" 2>/dev/null | tail -n 1) || return 0
  if [ -w "$memory" ] && [ "$kilobytes" -gt 1000000 ] &&
    ! findmnt -no OPTIONS -T "$memory" | grep -qw noexec; then
    export TMPDIR=${TMPDIR:-$memory}
  fi
}

# Prints the comment that a script begins with, which is its usage.
show_usage() {
  sed -n '2,/^[^#]/{s/^# \{0,1\}//p}' "$0"
}

# configure PRESET [OPTION...]: CMake prints only when something is wrong.
configure() {
  (cd "$root" && quietly cmake --preset "$@")
}

# build PRESET [TARGET...]
build() {
  local preset=$1
  shift
  (cd "$root" && NINJA_STATUS='[%f/%t %es] ' cmake --build --preset "$preset" -j "$jobs" \
    ${1:+--target "$@"})
}
