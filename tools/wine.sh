# A display and Wine for the programs of the Windows build. Both end with the script, also when it is killed. Needs
# progress.sh.

start_display() {
    local number=''
    exec 7< <(exec setpriv --pdeathsig TERM Xvfb -displayfd 1 -screen 0 1400x1000x24 -nolisten tcp 2>build/display.log 8>&-)
    display=$!
    read -r number <&7 || die "the display does not start; see build/display.log"
    export DISPLAY=:$number
}

# start_wine: makes the Windows prefix if there is none, and starts a server that stays between two programs.
start_wine() {
    export LC_ALL=C.UTF-8
    with_progress "preparing Wine" build/wine.log timeout -k 5 180 tools/wine-run cmd /c exit ||
        die "Wine does not start; see build/wine.log"
    run_job timeout 15 tools/wine-run wineserver -w ||
        die "a program that none of these commands has started runs in build/wine; end it first"
    set -m  # otherwise a signal that comes before the server has its handler would be ignored
    setpriv --pdeathsig INT tools/wine-run wineserver -f -p >>build/wine.log 2>&1 &
    wine_server=$!
    set +m
}
