# shellcheck shell=bash
# The installed files, judged by the tools that desktops bring for them. To be sourced, with STAGE, PREFIX and ID set.
# shellcheck disable=SC2034 # LABEL is for checks.sh

# clean NAME COMMAND...: it succeeds and says nothing.
clean() {
  local name=$1 said status
  shift
  said=$("$@" 2>&1)
  status=$?
  pass_if "$name" "status 0" "status $status${said:+: $said}"
}

# What man(1) has to say about a page, and roff's own warnings.
format_page() {
  LC_ALL=C.UTF-8 MANROFFSEQ='' man --warnings -E UTF-8 -l -Tutf8 -Z "$1" >/dev/null
}

# A page's text, without what it does to show it bold or italic.
page() {
  LC_ALL=C.UTF-8 MANWIDTH=200 man -l "$STAGE/usr/share/man/man$1/tallowin.$1.gz" 2>/dev/null | col -bx
}

file_cases() {
  LABEL=files
  local share=$STAGE/usr/share section shell file
  clean "the desktop entry is valid" desktop-file-validate "$share/applications/$ID.desktop"
  clean "so is the autostart entry" desktop-file-validate "$STAGE/etc/xdg/autostart/$ID.desktop"
  # The name was given before the habit of small letters.
  pass_if "the metainfo is valid" "P: $ID:3: cid-contains-uppercase-letter $ID
✔ Validation was successful: pedantic: 1" \
    "$(LC_ALL=C.UTF-8 appstreamcli validate --no-net --pedantic "$share/metainfo/$ID.metainfo.xml" | grep .)"
  for section in 1 5; do
    clean "tallowin($section) formats without a warning" format_page "$share/man/man$section/tallowin.$section.gz"
  done
  pass_if "tallowin(1) tells of words, URLs and options" "list [--json] [--names] [--urls] [--format TEXT]
tallowin://switch/SPACE
--get KEY" "$(page 1 | grep -oE '^ +(list \[.*|tallowin://switch/.*|--get .*)' | sed 's/^ *//')"
  pass_if "tallowin(5) tells what a setting does" \
    "hudPosition (a text; top) Where the pop-up stands. One of top, center, bottom." \
    "$(page 5 | grep -A1 '^ *hudPosition' | xargs)"
  for shell in bash zsh fish; do
    file=$(find "$share" -path "*/$shell*/*tallowin*" -type f)
    clean "$shell understands its completions" "$shell" -n "$file"
  done
  clean "shellcheck likes those for bash" shellcheck "$share/bash-completion/completions/tallowin"
  unit_cases
}

unit_cases() {
  local units=$PREFIX/lib/systemd/user generated=$INSTALLED/generated
  # It is verified where its program is.
  clean "the unit is valid" env "XDG_RUNTIME_DIR=$INSTALLED" systemd-analyze --user verify --man=no \
    "$units/tallowin.service"
  pass_if "the unit starts with the desktop" "$(realpath "$units/tallowin.service")" \
    "$(realpath "$units/graphical-session.target.wants/tallowin.service")"
  mkdir -p "$generated"
  XDG_CONFIG_DIRS=$STAGE/etc/xdg XDG_CONFIG_HOME=$INSTALLED/none XDG_CURRENT_DESKTOP=X PATH=$PREFIX/bin:$PATH \
    /usr/lib/systemd/user-generators/systemd-xdg-autostart-generator "$generated" "$generated" "$generated" 2>/dev/null
  pass_if "systemd does not start the autostart entry as well" "" "$(find "$generated" -type f)"
}
