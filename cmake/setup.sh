# For the scripts in the root: what each build needs of the machine, the builds themselves, a display for Wine.
# Sourced with the root as the current directory.

packages_host="cmake ninja-build g++ binutils googletest"
packages_sanitize="cmake ninja-build g++ clang libclang-rt-14-dev binutils googletest"
packages_windows="cmake ninja-build g++-mingw-w64-x86-64-posix binutils googletest wine wine64 xvfb util-linux"
packages_lint="cmake ninja-build g++ binutils googletest clang-format clang-tidy git perl"
packages_coverage="cmake ninja-build g++ binutils googletest gcovr"
packages_fuzz="cmake ninja-build g++ clang libclang-rt-14-dev binutils"
packages_bench="cmake ninja-build g++ libbenchmark-dev"

# need BUILD: installs the packages that the build needs and the machine has not.
need() {
    local list=packages_$1 package missing=()
    for package in ${!list}; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "== installing: ${missing[*]}"
    local as_root=
    [ "$(id -u)" = 0 ] || as_root=sudo
    $as_root apt-get update -qq >/dev/null
    DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq "${missing[@]}" >/dev/null
}

# build PRESET [TARGET ...]: configures and builds, quiet unless it fails.
build() {
    local preset=$1 log=build/$1.log
    shift
    mkdir -p build
    echo "== building: $preset"
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${1+--target "$@"}; } >"$log" 2>&1; then
        cat "$log"
        return 1
    fi
}

# start_display: a display of our own for windows, until the script ends.
start_display() {
    local numbers
    exec 7< <(exec Xvfb -displayfd 1 -screen 0 1400x1000x24 -nolisten tcp 2>/dev/null)
    display_pid=$!
    read -r numbers <&7
    export DISPLAY=:$numbers
    trap stop_display EXIT
}

stop_display() {
    WINEPREFIX=$PWD/build/wine wineserver -k 2>/dev/null || true
    kill "$display_pid" 2>/dev/null || true
}

# start_wine: the Windows prefix, with a server that stays between two programs.
start_wine() {
    export LC_ALL=C.UTF-8
    cmake/wine-run cmd /c exit
    WINEPREFIX=$PWD/build/wine wineserver -k || true
    WINEPREFIX=$PWD/build/wine wineserver -p
}

# report_coverage: which lines of the program and of the layer the tests of the coverage build have run.
report_coverage() {
    gcovr --root . --filter src/ --exclude-throw-branches --html-details build/coverage/report.html --print-summary \
        build/coverage 2>/dev/null
    echo "== report: build/coverage/report.html"
}
