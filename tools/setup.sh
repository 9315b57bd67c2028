# For the scripts in the root: what each build needs of the machine, the builds themselves, a display for Wine.
# Sourced with the root as the current directory.

packages_host="cmake ninja-build g++ binutils googletest"
packages_sanitize="cmake ninja-build g++ clang libclang-rt-14-dev binutils googletest"
packages_windows="cmake ninja-build g++-mingw-w64-x86-64-posix binutils googletest wine wine64 fonts-wine xvfb util-linux"
packages_release="gcc git perl zip unzip cmark-gfm"
packages_pictures="imagemagick locales"
packages_machine="qemu-system-x86 gcc imagemagick"
packages_display="x11-utils locales"
packages_lint="cmake ninja-build g++ binutils googletest clang-format clang-tidy git perl"
packages_coverage="cmake ninja-build g++ binutils googletest gcovr"
packages_fuzz="cmake ninja-build g++ clang libclang-rt-14-dev binutils"
packages_bench="cmake ninja-build g++ libbenchmark-dev"
packages_compare="pkgconf libinih-dev libsimpleini-dev libglib2.0-dev libtomlplusplus-dev"

export PATH  # the shell has one of its own where none is given

# refuse WORD: an argument that the script does not know; its usage tells those that it knows.
refuse() {
    echo "${0##*/}: unknown: $1" >&2
    usage >&2
    exit 2
}

die() {
    echo "== $1" >&2
    exit 1
}

# What this script has started and ends with it: the command that it waits for, the Wine server, the display.
worker='' wine_server='' display=''
trap stop EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

stop() {
    trap '' HUP INT TERM
    [ -z "$worker" ] || kill -- "-$worker" 2>/dev/null || true
    # This signal has the server end its programs; they must be gone before their display is.
    [ -z "$wine_server" ] || { kill -INT "$wine_server" && wait "$wine_server"; } 2>/dev/null || true
    [ -z "$display" ] || { kill "$display" && wait "$display"; } 2>/dev/null || true
}

# claim TREE: nobody else works in build/TREE until this script ends or claims another one. Scripts that it calls may.
# What outlives a killed script must not keep the lock: it starts with 8>&-.
claim() {
    local tree=$PWD/build/$1
    [ "${VELDRANE_CLAIMED-}" != "$tree" ] || return 0
    mkdir -p build
    exec 8>"$tree.lock"
    flock -w 2 8 || die "another command is at work in build/$1; try again when it has ended"
    export VELDRANE_CLAIMED=$tree
}

# spawn COMMAND ...: starts the worker, in a process group of its own, so that it ends with all that it has started.
spawn() {
    set -m
    "$@" &
    worker=$!
    set +m
}

# finish: waits for the worker and gives its exit code.
finish() {
    local status=0
    wait "$worker" || status=$?
    worker=
    return "$status"
}

# attend COMMAND ...: runs it; an interruption of the script ends it.
attend() {
    spawn "$@"
    finish
}

# alive TITLE LOG COMMAND ...: runs the command with its output in the log and shows meanwhile how far it is: on a
# terminal in one line that is rewritten, otherwise in a line now and then. The command sees no input.
alive() {
    local title=$1 log=$2 began=$SECONDS next=$((SECONDS + 10)) status=0
    shift 2
    mkdir -p build
    : >"$log"
    [ -t 1 ] || echo "== $title"
    spawn "$@" </dev/null >>"$log" 2>&1
    while kill -0 "$worker" 2>/dev/null; do
        sleep 0.2
        if [ -t 1 ]; then
            printf '\r\033[K== %s: %s%d s' "$title" "$(how_far "$log")" $((SECONDS - began))
        elif [ "$SECONDS" -ge "$next" ]; then
            echo "   $title: $(how_far "$log")$((SECONDS - began)) s"
            next=$((SECONDS + 15))
        fi
    done
    finish || status=$?
    [ ! -t 1 ] || printf '\r\033[K== %s (%d s)\n' "$title" $((SECONDS - began))
    return "$status"
}

# Ninja counts in [12/85], apt in percent behind the second colon.
how_far() {
    tail -n 30 "$1" | sed -n -E 's/^\[([0-9]+\/[0-9]+)\].*/\1, /p; s/^(dl|pm)status:[^:]*:([0-9]+).*/\2 %, /p' | tail -n 1
}

# need BUILD: installs the packages that the build needs and the machine has not.
need() {
    local list=packages_$1 package missing=() as_root=''
    if ! command -v apt-get >/dev/null; then
        echo "== no apt-get here; this needs what Debian calls ${!list}"
        return 0
    fi
    for package in ${!list}; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "== missing here: ${missing[*]}"
    # The emulator alone is large enough.
    [ "$1" != machine ] || missing+=(--no-install-recommends)
    if [ "$(id -u)" != 0 ]; then
        as_root=sudo
        # Its question must not be asked in a line that is rewritten.
        if ! command -v sudo >/dev/null || ! sudo -v; then
            echo "== you may not install here; ask an administrator for: apt-get install ${missing[*]}" >&2
            return 1
        fi
    fi
    if ! alive "installing" build/install.log install "$as_root" "${missing[@]}"; then
        grep -v status: build/install.log | tail -n 5
        return 1
    fi
}

# Waits for another apt that is at work; the lists have a lock for which apt does not wait. An interruption of the
# script does not stop it: packages that are half installed would be in the way of all later work.
install() {
    local as_root=$1
    shift
    trap '' TERM
    $as_root env DEBIAN_FRONTEND=noninteractive sh -c '
        apt-get update -qq || { sleep 15; apt-get update -qq; } || exit
        apt-get install -y -o DPkg::Lock::Timeout=600 -o APT::Status-Fd=1 "$@"
    ' sh "$@"
}

# build PRESET [TARGET ...]: configures and builds, quiet unless it fails.
build() {
    local cache=build/$1/CMakeCache.txt source=''
    claim "$1"
    [ ! -e "$cache" ] || source=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$cache")
    [ -z "$source" ] || [ "$source" -ef . ] || die "this folder was $source when it was built; remove what stands there: rm -rf build"
    if ! alive "building: $1" "build/$1.log" configure_and_build "$@"; then
        cat "build/$1.log"
        return 1
    fi
}

configure_and_build() {
    local preset=$1
    shift
    export TMPDIR=$PWD/build/tmp  # a compiler that is interrupted leaves its files
    mkdir -p "$TMPDIR"
    cmake --preset "$preset" && cmake --build --preset "$preset" ${1+--target "$@"}
}

# start_display: a display of our own for windows, until the script ends, whatever ends it.
start_display() {
    local number=''
    exec 7< <(exec setpriv --pdeathsig TERM Xvfb -displayfd 1 -screen 0 1400x1000x24 -nolisten tcp 2>build/display.log 8>&-)
    display=$!
    read -r number <&7 || die "no display comes up; see build/display.log"
    export DISPLAY=:$number
}

# start_wine: the Windows prefix, with a server of our own that stays between two programs, whatever ends the script.
start_wine() {
    export LC_ALL=C.UTF-8
    alive "preparing Wine" build/wine.log timeout -k 5 180 tools/wine-run cmd /c exit ||
        die "Wine does not come up; see build/wine.log"
    attend timeout 15 tools/wine-run wineserver -w ||
        die "a program that none of these commands has started runs in build/wine; end it first"
    set -m  # without it a signal that comes before the server expects it would be ignored
    setpriv --pdeathsig INT tools/wine-run wineserver -f -p >>build/wine.log 2>&1 &
    wine_server=$!
    set +m
}

# report_coverage: which lines of the program and of the layer the tests of the coverage build have run.
report_coverage() {
    gcovr --root . --filter src/ --exclude-throw-branches --html-details build/coverage/report.html --print-summary \
        build/coverage 2>/dev/null
    echo "== report: build/coverage/report.html"
}
