# How the scripts configure and build. Sourced; expects $root.

# build PRESET TARGET...: says when it configures, and what fails; the rest is in build/*.log.
build() {
  local preset=$1 directory="$root/build/$1" log="$root/build/build-$1.log"
  shift
  mkdir -p "$root/build"
  if [ ! -e "$directory/build.ninja" ]; then
    echo "Building build/$preset for the first time, which takes a few minutes" >&2
    (cd "$root" && cmake --preset "$preset" >"$log" 2>&1) || { cat "$log" >&2; return 1; }
  fi
  ninja -C "$directory" "$@" >"$log" 2>&1 || { grep -vE '^\[[0-9]+/[0-9]+\]|^ninja: Entering' "$log" >&2; return 1; }
}
