# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# The project server of a person's folder DATA: DATA/server/data is its data, DATA/server/port where it listens,
# DATA/server/pid its process. It goes on when the window is closed: a logout starts the window anew.

server_pid() { # DATA; prints the process of the folder's server, fails when it is not running
    local pid
    pid=$(cat "$1/server/pid" 2>/dev/null) || return 1
    [[ -n $pid && $(readlink "/proc/$pid/exe" 2>/dev/null) == "$1/server/bin/torvo-server"* ]] || return 1
    printf '%s\n' "$pid"
}

server_port() { # DATA
    cat "$1/server/port"
}

server_stop() { # DATA
    local pid i
    pid=$(server_pid "$1") || return 0
    kill "$pid"
    for ((i = 0; i < 100; i++)); do
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.1
    done
    kill -9 "$pid" 2>/dev/null || true
    rm -f "$1/server/pid"
}

# The port of the last time when it is still free, so that saved logins stay valid, or else a free one.
server_start() { # DATA
    local data=$1 port i
    if server_pid "$data" >/dev/null; then
        # One whose program has been replaced since is an older version.
        [[ $(readlink "/proc/$(server_pid "$data")/exe") == *'(deleted)' ]] || return 0
        server_stop "$data"
    fi
    mkdir -p "$data/server/data"
    for port in "$(cat "$data/server/port" 2>/dev/null || echo 0)" 0; do
        rm -f "$data/server/port.new"
        setsid "$data/server/bin/torvo-server" --data "$data/server/data" --listen "127.0.0.1:$port" \
            --port-file "$data/server/port.new" >>"$data/server/log" 2>&1 </dev/null &
        printf '%s\n' $! >"$data/server/pid"
        for ((i = 0; i < 100; i++)); do
            if [[ -f $data/server/port.new ]]; then
                mv "$data/server/port.new" "$data/server/port"
                return 0
            fi
            kill -0 $! 2>/dev/null || break
            sleep 0.1
        done
    done
    rm -f "$data/server/pid"
    tail -n 5 "$data/server/log" >&2
    fail "the project server could not be started (its words are above and in $data/server/log)"
}
