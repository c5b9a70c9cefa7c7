#!/bin/bash
# The Debian packages on a clean Debian 12 of the test's own making: clean_system.sh PACKAGE... Needs root and Debian's
# archive, from wherever apt gets it here.
set -u
if [ $# -eq 0 ]; then
  echo "usage: clean_system.sh PACKAGE..." >&2
  exit 64
fi
if [ -z "${OWN_MOUNTS:-}" ]; then
  # What is mounted goes with the script, however it ends.
  exec env OWN_MOUNTS=1 unshare --mount "$0" "$@"
fi
. "$(dirname "$0")/../e2e/desktop.sh"
. "$(dirname "$0")/../e2e/checks.sh"

LABEL="clean system"
mapfile -t PACKAGES < <(realpath "$@")
ROOT=$(mktemp -d "${TMPDIR:-/tmp}/tallowin-debian.XXXXXX")
chmod 755 "$ROOT" # as a root folder is, for the user there
INSTANCE_GROUP=
trap 'end_group "$INSTANCE_GROUP"; stop_desktop; umount "$ROOT/proc" 2>/dev/null; rm -rf --one-file-system "$ROOT"' EXIT
trap 'exit 130' INT TERM

inside() {
  chroot "$ROOT" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"
}

# As a user, who has a desktop.
as_user() {
  chroot --userspec=guest:guest "$ROOT" env -i PATH=/usr/bin:/bin HOME=/home/guest XDG_RUNTIME_DIR=/home/guest/run \
    LC_ALL=C.UTF-8 "DISPLAY=$DISPLAY" "$@" 2>/dev/null
}

# Ends the test, with what was said, if the command fails.
need() {
  "$@" >"$ROOT.log" 2>&1 && rm -f "$ROOT.log" && return
  tail -n 20 "$ROOT.log" >&2
  rm -f "$ROOT.log"
  echo "clean system: this failed: $*" >&2
  exit 1
}

make_system() {
  local mirror
  # shellcheck disable=SC2016 # apt's own names
  mirror=$(apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' |
    awk '$2 == "bookworm" && $3 == "main" { print $1; exit }')
  need debootstrap --variant=minbase bookworm "$ROOT" "$mirror"
  need mount -t proc proc "$ROOT/proc"
  cp -L /etc/resolv.conf /etc/hosts "$ROOT/etc/"
  need inside useradd --create-home guest
  need inside install -d -m 700 -o guest -g guest /home/guest/run
  need inside apt-get update
  # It is what tells the desktop which program opens a URL.
  need inside apt-get install -y --no-install-recommends desktop-file-utils
}

# Everything on the system that has to do with the program, but for the user's own and the package manager's notes.
traces() {
  (cd "$ROOT" && find etc opt root run srv tmp usr var -xdev -path var/lib/dpkg -prune -o -iname '*tallowin*' -print &&
    grep -rIl tallowin etc usr/share/applications var/lib --exclude-dir=dpkg --exclude-dir=apt) | sort -u
}

start_cases() {
  if ! start_server || ! start_window_manager openbox; then
    pass_if "openbox starts" yes no
    return
  fi
  need xhost +local:
  start_group chroot --userspec=guest:guest "$ROOT" env -i PATH=/usr/bin:/bin HOME=/home/guest \
    XDG_RUNTIME_DIR=/home/guest/run "DISPLAY=$DISPLAY" tallowin
  INSTANCE_GROUP=$STARTED_GROUP
  eventually as_user tallowin list >/dev/null
  wmctrl -s 0
  as_user tallowin tallowin://switch/2
  pass_if_eventually "it starts, and switches" 1 current_desktop
  pass_if_eventually "its windows are there" "tallowin-hud" \
    eval 'xwininfo -root -tree | grep -o "tallowin-hud"'
  as_user tallowin 'tallowin://rename/2?name=Mail'
  pass_if_eventually "it names" "* 2 Mail" eval 'as_user tallowin list | grep Mail | xargs'
  eventually test -s "$ROOT/home/guest/.local/share/Tallowin/spaces.json"
  as_user tallowin quit
  eventually group_is_gone "$INSTANCE_GROUP"
  pass_if "it quits" gone "$(group_lives "$INSTANCE_GROUP" || echo gone)"
}

make_system
pass_if "nothing is there before" "" "$(traces)"
mkdir "$ROOT/packages"
cp "${PACKAGES[@]}" "$ROOT/packages"
need inside sh -c 'apt-get install -y --no-install-recommends /packages/*.deb'
rm -r "$ROOT/packages"
pass_if "it is installed whole" "Status: install ok installed" \
  "$(inside dpkg --status tallowin | grep ^Status)$(inside dpkg --verify tallowin)"
pass_if "the desktop knows who opens its URLs" "x-scheme-handler/tallowin=com.quorvex.Tallowin.desktop;" \
  "$(grep tallowin "$ROOT/usr/share/applications/mimeinfo.cache")"
start_cases
need inside apt-get remove -y tallowin tallowin-ui
pass_if "removing it leaves its configuration" etc/xdg/autostart/com.quorvex.Tallowin.desktop "$(traces)"
need inside apt-get purge -y tallowin tallowin-ui
pass_if "purging it leaves nothing" "" "$(traces)"
pass_if "but the user's own" "Mail" "$(grep -o Mail "$ROOT/home/guest/.local/share/Tallowin/spaces.json" | head -n 1)"

echo "$PASSED passed, $FAILED failed"
[ $FAILED -eq 0 ]
