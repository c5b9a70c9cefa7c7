# shellcheck shell=bash
# The HTTP interface of a running instance, with curl as the client and the kernel's tables as the witness. To be sourced
# by run.sh.

http_cases() {
  HTTP_PORT=$(unused_port)
  TOKEN_FILE=$DESKTOP_DIRECTORY/tallowin/.local/share/Tallowin/api-token.txt
  put_in_front 0
  start_instance --port "$HTTP_PORT"
  pass_if "no port is open unless it is asked for" "" "$(listening_addresses)"
  tallowin --set localAPI true >/dev/null
  pass_if_eventually "the setting opens it, to this machine alone" "$(loopback_addresses)" listening_addresses
  pass_if_eventually "the Spaces can be read" "$(desktop_count)" count_of_spaces 127.0.0.1
  [ "$(loopback_addresses)" == 0100007F ] || pass_if "by IPv6 too" "$(desktop_count)" "$(count_of_spaces '[::1]')"
  pass_if "other addresses are not served" 7 "$(http 127.0.0.2 /spaces >/dev/null; echo $?)"
  pass_if "a command needs the token" '{"error":"missing or wrong token"} 401' "$(command_over_http switch/2 wrong)"
  pass_if "which is for the user alone" 600 "$(stat -c %a "$TOKEN_FILE")"
  pass_if "with it a command is taken" '{"ok":true} 200' "$(command_over_http switch/2 "$(cat "$TOKEN_FILE")")"
  pass_if_eventually "and performed" 1 current_desktop
  http_restart_cases
  ask quit >/dev/null
  eventually group_is_gone "$INSTANCE_GROUP"
}

http_restart_cases() {
  local token other
  token=$(cat "$TOKEN_FILE")
  ask quit >/dev/null
  eventually group_is_gone "$INSTANCE_GROUP"
  start_instance --port "$HTTP_PORT"
  pass_if "the next one finds the port, and the token stays" '{"ok":true} 200' "$(command_over_http switch/1 "$token")"
  pass_if_eventually "and commands go on" 0 current_desktop
  "$PROGRAM" --home "$DESKTOP_DIRECTORY/other" --set localAPI true
  start_group "$PROGRAM" --home "$DESKTOP_DIRECTORY/other" --platform x11 --port "$HTTP_PORT" --verbose
  other=$STARTED_GROUP
  pass_if_eventually "a port that is taken is said" 1 grep -c "could not open port $HTTP_PORT" "$DESKTOP_DIRECTORY/log"
  end_group "$other"
  tallowin --set localAPI false >/dev/null
  pass_if_eventually "the setting closes the port" "" listening_addresses
}

# http HOST TARGET [CURL-ARGUMENTS...]: the body and the status.
http() {
  local host=$1 target=$2
  shift 2
  curl -s -m 10 -w ' %{http_code}' "$@" "http://$host:$HTTP_PORT$target"
}

command_over_http() {
  http 127.0.0.1 "/command?url=tallowin://$1" -X POST -H "Authorization: Bearer $2"
}

count_of_spaces() {
  http "$1" /spaces | sed 's/ 200$//' | jq '.spaces | length' 2>/dev/null
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
  for port in $(shuf -n 100 -i 20000-30000); do
    if ! grep -qsi ":$(printf %04X "$port") " /proc/net/tcp /proc/net/tcp6; then
      echo "$port"
      return
    fi
  done
}
