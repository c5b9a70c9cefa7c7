# shellcheck shell=bash
# What shells complete while an instance runs whose second Space is called "Mail & more". To be sourced.
# shellcheck disable=SC2034 # LABEL is for checks.sh

# Each row: what is typed, and the candidates that there must be among others, as they are.
COMPLETIONS=(
  "tallowin cur|current"
  "tallowin edit Ma|Mail & more"
  "tallowin pin xterm Ma|Mail & more"
  "tallowin --home x edit 2 --na|--name"
  "tallowin profile u|use"
  "tallowin template apply Dev|Developer"
  "tallowin --set hudPos|hudPosition"
  "tallowin --set hudPosition b|bottom"
  "tallowin --set hudEnabled f|false"
  "tallowin --platform sim|simulated"
  "tallowin export /etc/host|/etc/hostname"
  "tallowin tallowin://move-window/Ma|tallowin://move-window/Mail%20%26%20more"
  "tallowin tallowin://rest|tallowin://restore-layout"
)

# Answers with what the shell offers for the command line "$1", one to a line.
offered_by_bash() {
  # shellcheck disable=SC2016 # for the shell that is started to expand
  bash --norc -c '
    . /usr/share/bash-completion/bash_completion
    . "$2/usr/share/bash-completion/completions/tallowin"
    COMP_LINE=$1 COMP_POINT=${#1} COMP_TYPE=9
    # Readline takes a colon for the end of a word.
    read -ra COMP_WORDS <<<"${1//:/ : }"
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _tallowin 2>/dev/null
    for candidate in "${COMPREPLY[@]}"; do
      eval "printf \"%s\n\" $candidate"
    done' - "$1" "$STAGE"
}

offered_by_fish() {
  # shellcheck disable=SC2016 # for fish to expand
  fish --no-config -c 'source $argv[2]/usr/share/fish/vendor_completions.d/tallowin.fish
    complete -C $argv[1] | cut -f 1' "$1" "$STAGE"
}

# Zsh completes only at a terminal, so it is given one, and types; what it lists there is what it offers.
offered_by_zsh() {
  zsh -f "$(dirname "${BASH_SOURCE[0]}")/zsh_offers.zsh" "$STAGE/usr/share/zsh/vendor-completions" "$1"
}

completion_cases() {
  local row shell line expected
  for shell in bash fish zsh; do
    LABEL=$shell
    for row in "${COMPLETIONS[@]}"; do
      line=${row%%|*}
      expected=${row#*|}
      # Bash is to offer what follows a colon; zsh, names of files without their folder.
      [ "$shell" != bash ] || expected=${expected#tallowin:}
      [ "$shell" != zsh ] || expected=${expected#/etc/}
      pass_if "\"$line\" can become \"$expected\"" "$expected" \
        "$("offered_by_$shell" "$line" | grep -xF -- "$expected")"
    done
  done
}
