# shellcheck shell=bash
# The HTTP interface of a running instance, with curl as the client and the kernel's tables as the witness. What it
# answers is in docs/http.md, which tests/documents runs. To be sourced by run.sh.

http_cases() {
  HTTP_PORT=$(unused_port)
  start_instance --port "$HTTP_PORT"
  pass_if "no port is open unless it is asked for" "" "$(listening_addresses)"
  tallowin --set localAPI true >/dev/null
  pass_if_eventually "the setting opens it at once, to this machine alone" "$(loopback_addresses)" listening_addresses
  pass_if_eventually "it is served there" 200 status_of 127.0.0.1 spaces
  [ "$(loopback_addresses)" == 0100007F ] || pass_if "by IPv6 too" 200 "$(status_of '[::1]' spaces)"
  pass_if "other addresses are not served" 000 "$(status_of 127.0.0.2 spaces)"
  pass_if "a command needs the token" 401 "$(status_of 127.0.0.1 'command?url=tallowin://back' -X POST)"
  pass_if "which is for the user alone" 600 "$(stat -c %a "$DESKTOP_DIRECTORY"/tallowin/.local/share/Tallowin/api-token.txt)"
  tallowin --set localAPI false >/dev/null
  pass_if_eventually "the setting closes the port at once" "" listening_addresses
  quit_instance
}

# status_of HOST TARGET [CURL-ARGUMENTS...]
status_of() {
  curl -s -m 10 -o /dev/null -w '%{http_code}' "${@:3}" "http://$1:$HTTP_PORT/$2"
}

# Where the kernel says that somebody listens on the port.
listening_addresses() {
  awk -v port=":$(printf %04X "$HTTP_PORT")" '$4 == "0A" && index($2, port) { sub(":.*", "", $2); print $2 }' \
    /proc/net/tcp /proc/net/tcp6 2>/dev/null | paste -sd ' '
}

# 127.0.0.1, and ::1 where there is IPv6.
loopback_addresses() {
  if grep -qs '^00000000000000000000000000000001 .* lo$' /proc/net/if_inet6; then
    echo "0100007F 00000000000000000000000001000000"
  else
    echo 0100007F
  fi
}

# A port that nobody uses.
unused_port() {
  local port
  while port=$(shuf -n 1 -i 20000-30000) && grep -qsi ":$(printf %04X "$port") " /proc/net/tcp*; do :; done
  echo "$port"
}
