# How the scripts configure and build. Sourced; expects $root.

# build PRESET TARGET...: quiet unless something has to be done or fails.
build() {
  local preset=$1 directory="$root/build/$1"
  shift
  if [ ! -e "$directory/build.ninja" ]; then
    echo "Configuring build/$preset" >&2
    (cd "$root" && cmake --preset "$preset" >"$root/build/configure-$preset.log" 2>&1) ||
      { cat "$root/build/configure-$preset.log" >&2; return 1; }
  fi
  ninja -C "$directory" -n "$@" 2>/dev/null | grep -q 'no work to do' && return 0
  local log="$root/build/build-$preset.log"
  echo "Building build/$preset" >&2
  ninja -C "$directory" "$@" >"$log" 2>&1 || { grep -vE '^\[[0-9]+/[0-9]+\]|^ninja: Entering' "$log" >&2; return 1; }
}
