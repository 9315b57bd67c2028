# For the scripts in the root: what each build needs of the machine, the builds themselves, a display for Wine.
# Sourced with the root as the current directory.

packages_host="cmake ninja-build g++ binutils googletest"
packages_sanitize="cmake ninja-build g++ clang libclang-rt-14-dev binutils googletest"
packages_windows="cmake ninja-build g++-mingw-w64-x86-64-posix binutils googletest wine wine64 fonts-wine xvfb util-linux"
packages_release="cmake ninja-build g++-mingw-w64-x86-64-posix gcc binutils googletest git perl zip cmark-gfm"
packages_pictures="imagemagick locales"
packages_machine="qemu-system-x86 gcc imagemagick"
packages_display="x11-utils locales"
packages_lint="cmake ninja-build g++ binutils googletest clang-format clang-tidy git perl"
packages_coverage="cmake ninja-build g++ binutils googletest gcovr"
packages_fuzz="cmake ninja-build g++ clang libclang-rt-14-dev binutils"
packages_bench="cmake ninja-build g++ libbenchmark-dev"
packages_compare="pkgconf libinih-dev libsimpleini-dev libglib2.0-dev libtomlplusplus-dev"

# alive TITLE LOG COMMAND ...: runs the command with its output in the log and shows meanwhile how far it is: on a
# terminal in one line that is rewritten, otherwise in a line now and then. The command sees no input.
alive() {
    local title=$1 log=$2 line far='' status=0 begin=$SECONDS next=$((SECONDS + 10))
    shift 2
    mkdir -p build
    : >"$log"
    [ -t 1 ] || echo "== $title"
    exec 6< <("$@" </dev/null 2>&1)
    local worker=$!
    while :; do
        if IFS= read -r -t 1 -u 6 line; then
            printf '%s\n' "$line" >>"$log"
        elif [ $? -le 128 ]; then
            break
        else
            printf '%s' "$line" >>"$log"
        fi
        # Ninja counts in [12/85], apt in percent behind the second colon.
        if [[ $line =~ ^\[([0-9]+/[0-9]+)\] ]]; then far="${BASH_REMATCH[1]}, "; fi
        if [[ $line =~ ^(dl|pm)status:[^:]*:([0-9]+) ]]; then far="${BASH_REMATCH[2]} %, "; fi
        if [ -t 1 ]; then
            printf '\r\033[K== %s: %s%d s' "$title" "$far" $((SECONDS - begin))
        elif [ "$SECONDS" -ge "$next" ]; then
            echo "   $title: $far$((SECONDS - begin)) s"
            next=$((SECONDS + 15))
        fi
    done
    exec 6<&-
    wait "$worker" || status=$?
    [ ! -t 1 ] || printf '\r\033[K== %s (%d s)\n' "$title" $((SECONDS - begin))
    return "$status"
}

# need BUILD: installs the packages that the build needs and the machine has not.
need() {
    local list=packages_$1 package missing=()
    if ! command -v apt-get >/dev/null; then
        echo "== no apt-get here; this needs what Debian calls ${!list}"
        return 0
    fi
    for package in ${!list}; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "== missing here: ${missing[*]}"
    local as_root=
    if [ "$(id -u)" != 0 ]; then
        as_root=sudo
        sudo -v || return 1  # its question must not stand in a line that is rewritten
    fi
    # The emulator alone is large enough.
    [ "$1" != machine ] || missing+=(--no-install-recommends)
    if ! alive "installing" build/install.log install "$as_root" "${missing[@]}"; then
        tail -q -n 5 build/install.log build/apt.log 2>/dev/null
        return 1
    fi
}

# The output goes to a file: apt makes what it reports to non-blocking, and packages that write there would fail.
install() {
    local as_root=$1
    shift
    $as_root env DEBIAN_FRONTEND=noninteractive sh -c '
        exec 9>&1 >build/apt.log 2>&1
        apt-get update -qq && apt-get install -y -o APT::Status-Fd=9 "$@"
    ' sh "$@"
}

# build PRESET [TARGET ...]: configures and builds, quiet unless it fails.
build() {
    if ! alive "building: $1" "build/$1.log" configure_and_build "$@"; then
        cat "build/$1.log"
        return 1
    fi
}

configure_and_build() {
    local preset=$1
    shift
    cmake --preset "$preset" && cmake --build --preset "$preset" ${1+--target "$@"}
}

# start_display: a display of our own for windows, until the script ends.
start_display() {
    local numbers
    exec 7< <(exec Xvfb -displayfd 1 -screen 0 1400x1000x24 -nolisten tcp 2>/dev/null)
    display_pid=$!
    trap stop_windows EXIT
    read -r numbers <&7 || return 1
    export DISPLAY=:$numbers
}

# start_wine: the Windows prefix, with a server that stays between two programs. Fails when Wine does not come up.
start_wine() {
    export LC_ALL=C.UTF-8
    trap stop_windows EXIT
    wine_prefix=$PWD/build/wine
    alive "preparing Wine" build/wine.log timeout -k 5 180 cmake/wine-run cmd /c exit || return 1
    WINEPREFIX=$wine_prefix wineserver -k || true
    WINEPREFIX=$wine_prefix wineserver -p
}

stop_windows() {
    [ -z "${wine_prefix-}" ] || WINEPREFIX=$wine_prefix wineserver -k 2>/dev/null || true
    [ -z "${display_pid-}" ] || kill "$display_pid" 2>/dev/null || true
}

# report_coverage: which lines of the program and of the layer the tests of the coverage build have run.
report_coverage() {
    gcovr --root . --filter src/ --exclude-throw-branches --html-details build/coverage/report.html --print-summary \
        build/coverage 2>/dev/null
    echo "== report: build/coverage/report.html"
}
