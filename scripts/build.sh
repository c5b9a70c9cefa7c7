# How the scripts configure and build. Sourced; expects $root.

# configure PRESET: unless that has been done.
configure() {
  local preset=$1 log="$root/build/configure-$1.log"
  mkdir -p "$root/build"
  [ ! -e "$root/build/$preset/build.ninja" ] || return 0
  (cd "$root" && cmake --preset "$preset" >"$log" 2>&1) || { cat "$log" >&2; return 1; }
}

# build PRESET TARGET...: says when it does so for the first time, and what fails; the rest is in build/*.log.
build() {
  local preset=$1 log="$root/build/build-$1.log"
  shift
  if [ ! -e "$root/build/$preset/build.ninja" ]; then
    echo "Building build/$preset for the first time, which takes a few minutes" >&2
  fi
  configure "$preset"
  ninja -C "$root/build/$preset" "$@" >"$log" 2>&1 ||
    { grep -vE '^\[[0-9]+/[0-9]+\]|^ninja: Entering' "$log" >&2; return 1; }
}
