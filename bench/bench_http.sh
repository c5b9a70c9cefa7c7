#!/bin/bash
# The HTTP interface under openbox in a virtual server, beside nginx that serves the same bytes: requests per second,
# memory after many requests, and the time a command takes while a thousand clients connect and say nothing.
#   bench_http.sh BUILD-DIRECTORY [REQUESTS [ROUNDS]]
set -u
if [ $# -lt 1 ]; then
  echo "usage: bench_http.sh BUILD-DIRECTORY [REQUESTS [ROUNDS]]" >&2
  exit 64
fi
BUILD=$(realpath "$1")
REQUESTS=${2:-1000000}
ROUNDS=${3:-5}
OUR_PORT=57381
NGINX_PORT=57382
. "$(dirname "$0")/../tests/e2e/desktop.sh"
SILENT=
NGINX=
clean_up() {
  end_group "$SILENT"
  end_group "$NGINX"
  stop_desktop
}
trap clean_up EXIT
trap 'exit 130' INT TERM

# Memory of process $1 in KiB, shared pages counted in proportion.
memory() { awk '/^Pss:/ { print $2 }' "/proc/$1/smaps_rollup"; }

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
  load "$1" 4 | awk '/^Requests\/sec/ { rate = $2 } /Socket errors|Non-2xx/ { print > "/dev/stderr" } END { print rate }'
}

median() { sort -n | awk '{ value[NR] = $1 } END { print value[int((NR + 1) / 2)] }'; }

compare_with_nginx() {
  local round ours=() theirs=()
  for round in $(seq "$ROUNDS"); do
    ours+=("$(rate $OUR_PORT)")
    theirs+=("$(rate $NGINX_PORT)")
    echo "  round $round: tallowin ${ours[-1]}, nginx ${theirs[-1]} requests per second"
  done
  local our_median their_median
  our_median=$(printf '%s\n' "${ours[@]}" | median)
  their_median=$(printf '%s\n' "${theirs[@]}" | median)
  awk -v ours="$our_median" -v theirs="$their_median" \
    'BEGIN { printf "  median: tallowin %.0f, nginx %.0f, ratio %.2f\n", ours, theirs, ours / theirs }'
}

# Each round ends with a request that has its answer when the others have theirs.
memory_under_load() {
  local before done=0
  before=$(memory "$1")
  while [ $done -lt "$REQUESTS" ]; do
    done=$((done + $(load $OUR_PORT 10 | awk '/requests in/ { print $1 }')))
  done
  echo "Memory (proportional set): $before KiB, after $done requests $(memory "$1") KiB"
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

switch_times() {
  "$BUILD/bench/switch_latency" 100 "$BUILD/tallowin tallowin://switch/%n" "wmctrl -s %i" || exit 1
}

start_server && start_window_manager openbox || exit 1
TALLOWIN_PLATFORM=x11 "$BUILD/tallowin" --set localAPI true
start_group "$BUILD/tallowin" --platform x11 --port "$OUR_PORT"
resident=$STARTED_GROUP
eventually answers $OUR_PORT && start_nginx || exit 1

echo "GET /spaces, $(stat -c %s "$DESKTOP_DIRECTORY/nginx/files/spaces") bytes, 32 clients, a connection for each request:"
compare_with_nginx
memory_under_load "$resident"
echo "A switch, from the command's start to the change:"
switch_times
export -f silent_clients
export OUR_PORT DESKTOP_DIRECTORY
start_group bash -c silent_clients
SILENT=$STARTED_GROUP
eventually test -e "$DESKTOP_DIRECTORY/silent"
echo "The same with a thousand silent clients:"
switch_times
"$BUILD/tallowin" quit
