# zsh_offers.zsh FOLDER LINE: what zsh offers for the line with the completions of the folder, one to a line. It
# completes only at a terminal, so it is given one.
zmodload zsh/zpty
offers=$(mktemp -u)
mkfifo $offers
exec {offered}<>$offers
zpty terminal zsh -f -i
# Calls of compadd that only fill arrays offer nothing.
zpty -w terminal "fpath=(${(q)1} \$fpath); offers=$offers; PS1= ; unsetopt auto_list
autoload -Uz compinit; compinit -u -D
compadd() {
  local -a found
  [[ \$* == *-[OAD]\ * ]] || builtin compadd -A found \"\$@\"
  (( ! \$#found )) || print -rl -- \${(Q)found} >\$offers
  builtin compadd \"\$@\"
}
comppostfuncs=(say_end)
say_end() { print '/end' >\$offers }"
zpty -n -w terminal $2$'\t'
while read -rt 60 -u $offered line && [[ $line != /end ]]; do
  print -r -- $line
done
zpty -d terminal
rm -f $offers
