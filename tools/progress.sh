# Shows the progress of a long command.

# with_progress TITLE LOG COMMAND ...: runs the command without input, writes its output to the log and returns its exit
# code. On a terminal, shows the progress in one line that is rewritten; elsewhere prints a line every 15 seconds.
with_progress() {
    local title=$1 log=$2 began=$SECONDS next=$((SECONDS + 10)) status=0
    shift 2
    mkdir -p build
    : >"$log"
    [ -t 1 ] || echo "== $title"
    start_job "$@" </dev/null >>"$log" 2>&1
    while kill -0 "$job" 2>/dev/null; do
        sleep 0.2
        if [ -t 1 ]; then
            printf '\r\033[K== %s: %s%d s' "$title" "$(how_far "$log")" $((SECONDS - began))
        elif [ "$SECONDS" -ge "$next" ]; then
            echo "   $title: $(how_far "$log")$((SECONDS - began)) s"
            next=$((SECONDS + 15))
        fi
    done
    finish_job || status=$?
    [ ! -t 1 ] || printf '\r\033[K== %s (%d s)\n' "$title" $((SECONDS - began))
    return "$status"
}

# Prints the last progress in the log. Ninja and the lint write it as [12/85], apt in percent after the second colon.
how_far() {
    tail -n 30 "$1" | sed -n -E 's/^\[([0-9]+\/[0-9]+)\].*/\1, /p; s/^(dl|pm)status:[^:]*:([0-9]+).*/\2 %, /p' | tail -n 1
}
