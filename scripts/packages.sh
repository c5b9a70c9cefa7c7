# Which Debian packages each task needs, and how to get the missing ones. Sourced by ./run and ./test.

# CMake looks for what the tests and benchmarks need whatever is built.
packages_build=(g++ cmake ninja-build ccache pkg-config
  qt6-base-dev nlohmann-json3-dev libutf8proc-dev liburiparser-dev libsystemd-dev
  libcanberra-dev libxcb1-dev libxcb-randr0-dev libxcb-res0-dev libxcb-xtest0-dev
  libgtest-dev libgmock-dev libbenchmark-dev)
packages_test=(xvfb x11-utils x11-xserver-utils xterm xclip procps wmctrl xdotool openbox xfwm4 i3-wm dbus systemd libglib2.0-bin jq python3 python3-gi gir1.2-atspi-2.0 at-spi2-core tint2 curl fonts-dejavu-core
  desktop-file-utils appstream man-db groff-base bsdextrautils shellcheck bash-completion zsh fish xdg-utils
  dpkg-dev)
packages_pictures=(x11-apps imagemagick)
packages_bench=(nginx-light wrk polybar)
packages_more_window_managers=(kwin-x11 breeze libkf5globalaccel-bin metacity fluxbox icewm)
packages_clean_system=(debootstrap)
packages_coverage=(gcovr)
packages_lint=(git clang-format-19 clang-tidy-19)
packages_fuzz=(clang-19 libclang-rt-19-dev)

# The packages of "$@" that are not installed, one to a line.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || echo "$package"
  done
}

# cannot_install WHY REASON PACKAGE...: names what is needed and ends the script.
cannot_install() {
  local why=$1 reason=$2
  shift 2
  echo "$reason To $why, install these packages (Debian names): $*" >&2
  exit 69
}

# ensure_packages WHY PACKAGE...: installs what is missing, saying so in one line; where that is not possible it names
# the packages and ends the script. A stamp per package list keeps later runs from asking dpkg again. On other systems
# TALLOWIN_PACKAGES_PRESENT=1 says that everything is there.
ensure_packages() {
  local why=$1 stamp log missing sudo=()
  shift
  stamp="$root/build/.packages-$(printf '%s\n' "$@" | cksum | cut -d' ' -f1)"
  [ ! -e "$stamp" ] || return 0
  [ -z "${TALLOWIN_PACKAGES_PRESENT:-}" ] || return 0
  if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
    cannot_install "$why" "This system has no apt-get." "$@"
  fi
  mapfile -t missing < <(missing_packages "$@")
  if [ ${#missing[@]} -gt 0 ]; then
    if [ "$(id -u)" != 0 ]; then
      command -v sudo >/dev/null || cannot_install "$why" "There is no sudo here." "${missing[@]}"
      sudo=(sudo)
    fi
    echo "Installing with apt-get, to $why: ${missing[*]}" >&2
    mkdir -p "$root/build"
    log="$root/build/packages.log"
    # A list of packages that cannot be brought up to date may still do.
    "${sudo[@]}" apt-get update -qq >"$log" 2>&1 || true
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
      >>"$log" 2>&1 || { cat "$log" >&2; cannot_install "$why" "apt-get failed." "${missing[@]}"; }
  fi
  mkdir -p "$root/build"
  touch "$stamp"
}
