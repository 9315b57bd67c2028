# Starts a virtual display and Wine for the programs of the Windows build. Both end with the script, also when the script
# is killed. Needs progress.sh.

start_display() {
    local number=''
    exec 7< <(exec setpriv --pdeathsig TERM Xvfb -displayfd 1 -screen 0 1400x1000x24 -nolisten tcp 2>build/display.log 8>&-)
    display=$!
    read -r number <&7 || die "the display does not start; see build/display.log"
    export DISPLAY=:$number
}

# start_wine: creates the Wine prefix if there is none, and starts a Wine server that runs until the script ends.
start_wine() {
    export LC_ALL=C.UTF-8
    with_progress "preparing Wine" build/wine.log timeout -k 5 180 tools/wine-run cmd /c exit ||
        die "Wine does not start; see build/wine.log"
    run_job timeout 15 tools/wine-run wineserver -w ||
        die "build/wine is used by a program that none of these commands has started; end that program first"
    set -m  # otherwise the server would ignore SIGINT until it has installed its handler
    setpriv --pdeathsig INT tools/wine-run wineserver -f -p >>build/wine.log 2>&1 &
    wine_server=$!
    set +m
}
