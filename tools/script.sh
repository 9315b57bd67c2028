# For every command: how it refuses arguments, runs jobs, and ends them with itself. The other parts (tools/*.sh) rest on
# this one. All are sourced with the root as the current directory.

export PATH  # the shell has one of its own where none is given

# refuse WORD: ends the script because of an argument that it does not know.
refuse() {
    echo "${0##*/}: unknown: $1" >&2
    usage >&2
    exit 2
}

die() {
    echo "== $1" >&2
    exit 1
}

# What ends with the script: the command that it waits for, the Wine server, the display.
job='' wine_server='' display=''
trap stop EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

stop() {
    trap '' HUP INT TERM
    [ -z "$job" ] || kill -- "-$job" 2>/dev/null || true
    # This signal makes the server end its programs. They must end before their display does.
    [ -z "$wine_server" ] || { kill -INT "$wine_server" && wait "$wine_server"; } 2>/dev/null || true
    [ -z "$display" ] || { kill "$display" && wait "$display"; } 2>/dev/null || true
}

# start_job COMMAND ...: starts the command in a process group of its own, so that its children end with it.
start_job() {
    set -m
    "$@" &
    job=$!
    set +m
}

# finish_job: waits for the job and returns its exit code.
finish_job() {
    local status=0
    wait "$job" || status=$?
    job=
    return "$status"
}

# run_job COMMAND ...: runs the command; it ends when the script is interrupted.
run_job() {
    start_job "$@"
    finish_job
}
