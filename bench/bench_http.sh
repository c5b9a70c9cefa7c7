#!/bin/bash
# The HTTP interface under openbox in a virtual server, beside nginx that serves the same bytes: requests per second,
# memory after many requests, and the time a command takes while a thousand clients connect and say nothing. Prints
# table rows (rows.sh).
#   bench_http.sh BUILD-DIRECTORY [ROUNDS [SECONDS [REQUESTS]]]
# A round loads each server for SECONDS.
set -uo pipefail
. "$(dirname "$0")/rows.sh"
ROUNDS=${2:-10}
SPAN=${3:-4}
REQUESTS=${4:-1000000}
# shellcheck disable=SC2034 # for rows.sh
RUNS=$((ROUNDS * 10))
OUR_PORT=57381
NGINX_PORT=57382
SILENT=
NGINX=
clean_up() {
  end_group "$SILENT"
  end_group "$NGINX"
  stop_desktop
}
trap clean_up EXIT
trap 'exit 130' INT TERM

answers() { curl -sf "http://127.0.0.1:$1/spaces" >/dev/null; }

# One worker, no log, and each connection for one request, as we have it.
start_nginx() {
  local folder=$DESKTOP_DIRECTORY/nginx
  mkdir -p "$folder/files"
  curl -s "http://127.0.0.1:$OUR_PORT/spaces" >"$folder/files/spaces"
  cat >"$folder/nginx.conf" <<CONFIGURATION
worker_processes 1;
daemon off;
pid $folder/pid;
error_log $folder/error.log;
user $(id -un);
events { worker_connections 1024; }
http {
  access_log off;
  keepalive_timeout 0;
  sendfile on;
  default_type application/json;
  client_body_temp_path $folder/body;
  proxy_temp_path $folder/proxy;
  fastcgi_temp_path $folder/fastcgi;
  uwsgi_temp_path $folder/uwsgi;
  scgi_temp_path $folder/scgi;
  server {
    listen 127.0.0.1:$NGINX_PORT;
    root $folder/files;
  }
}
CONFIGURATION
  start_group /usr/sbin/nginx -p "$folder" -c "$folder/nginx.conf" -e "$folder/error.log"
  NGINX=$STARTED_GROUP
  eventually answers "$NGINX_PORT"
}

# load PORT SECONDS: what wrk says.
load() {
  wrk -t 1 -c 32 -d "$2s" -H 'Connection: close' "http://127.0.0.1:$1/spaces"
}

# Requests per second, unless there were errors.
rate() {
  load "$1" "$SPAN" | awk '/^Requests\/sec/ { rate = $2 } /Socket errors|Non-2xx/ { print > "/dev/stderr" } END { print rate }'
}

compare_with_nginx() {
  local round bytes
  bytes=$(stat -c %s "$DESKTOP_DIRECTORY/nginx/files/spaces")
  for round in $(seq "$ROUNDS"); do
    echo "  HTTP, round $round" >&2
    echo "1 $(rate $OUR_PORT)"
    echo "2 $(rate $NGINX_PORT)"
  done | rows "HTTP, GET of $bytes bytes (requests/s, more is better)" nginx
}

# Each round ends with a request that has its answer when the others have theirs.
memory_under_load() {
  local before done=0
  before=$(own_memory "$1")
  while [ $done -lt "$REQUESTS" ]; do
    done=$((done + $(load $OUR_PORT "$SPAN" | awk '/requests in/ { print $1 }')))
  done
  printf '%s\n' "1 $(own_memory "$1")" "2 $before" | rows "own memory after $done HTTP requests (KiB)" "before them"
}

# A thousand connections that never say anything, made anew as they are dropped.
silent_clients() {
  local count descriptor
  ulimit -n 4096
  while true; do
    for count in $(seq 1000); do
      exec {descriptor}<>"/dev/tcp/127.0.0.1/$OUR_PORT" && descriptors[count]=$descriptor
    done
    touch "$DESKTOP_DIRECTORY/silent"
    sleep 4
    for descriptor in "${descriptors[@]}"; do
      exec {descriptor}>&-
    done
  done
}

start_server && start_window_manager openbox || exit 1
TALLOWIN_PLATFORM=x11 "$BUILD/tallowin" --set localAPI true >&2
start_group "$BUILD/tallowin" --platform x11 --port "$OUR_PORT"
resident=$STARTED_GROUP
eventually answers $OUR_PORT && start_nginx || exit 1

compare_with_nginx || exit 1
echo "  memory after $REQUESTS requests" >&2
memory_under_load "$resident" || exit 1
export -f silent_clients
export OUR_PORT DESKTOP_DIRECTORY
start_group bash -c silent_clients
SILENT=$STARTED_GROUP
eventually test -e "$DESKTOP_DIRECTORY/silent"
beside switch_latency "switch beside 1,000 silent HTTP clients, start to change (ms)" \
  "$BUILD/tallowin tallowin://switch/%n" "wmctrl -s" "wmctrl -s %i"
"$BUILD/tallowin" quit
