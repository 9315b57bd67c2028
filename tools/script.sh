# The functions that every command needs: refusing arguments, running jobs, and ending its processes when it ends. The
# other parts (tools/*.sh) need this one. All are sourced with the root as the current directory.

export PATH  # without a PATH in the environment, the shell has a default one that it does not export

# refuse WORD: reports an unknown argument, prints the usage and ends the script with exit code 2.
refuse() {
    echo "${0##*/}: unknown: $1" >&2
    usage >&2
    exit 2
}

# die MESSAGE: prints the message and ends the script with exit code 1.
die() {
    echo "== $1" >&2
    exit 1
}

# The processes that end with the script: the command that the script waits for, the Wine server, the display.
job='' wine_server='' display=''
trap stop EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

stop() {
    trap '' HUP INT TERM
    [ -z "$job" ] || kill -- "-$job" 2>/dev/null || true
    # SIGINT makes the server end its programs. The programs must end before the display does.
    [ -z "$wine_server" ] || { kill -INT "$wine_server" && wait "$wine_server"; } 2>/dev/null || true
    [ -z "$display" ] || { kill "$display" && wait "$display"; } 2>/dev/null || true
}

# start_job COMMAND ...: starts the command in a process group of its own, so that stop also ends its children.
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

# run_job COMMAND ...: runs the command and returns its exit code. An interruption of the script ends the command.
run_job() {
    start_job "$@"
    finish_job
}
