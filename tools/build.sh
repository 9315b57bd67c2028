# Locks and runs the builds. Needs progress.sh.

# lock_build NAME: locks build/NAME against other commands until this script ends or locks another build. Scripts that
# this script calls may still use the build. A process that can outlive a killed script must not keep the lock: start it
# with 8>&-.
lock_build() {
    local folder=$PWD/build/$1
    [ "${VELDRANE_LOCKED-}" != "$folder" ] || return 0
    mkdir -p build
    exec 8>"$folder.lock"
    flock -w 2 8 || die "another command is at work in build/$1; try again when it has ended"
    export VELDRANE_LOCKED=$folder
}

# build PRESET [TARGET ...]: configures and builds. Prints the output only if that fails.
build() {
    local cache=build/$1/CMakeCache.txt source=''
    lock_build "$1"
    [ ! -e "$cache" ] || source=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$cache")
    [ -z "$source" ] || [ "$source" -ef . ] || die "build/$1 was made when this folder was $source; remove it: rm -rf build"
    if ! with_progress "building: $1" "build/$1.log" configure_and_build "$@"; then
        cat "build/$1.log"
        return 1
    fi
}

configure_and_build() {
    local preset=$1
    shift
    export TMPDIR=$PWD/build/tmp  # interrupted compilers leave temporary files there
    mkdir -p "$TMPDIR"
    cmake --preset "$preset" && cmake --build --preset "$preset" ${1+--target "$@"}
}
