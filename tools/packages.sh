# The Debian packages that each build and command needs, and their installation. Needs progress.sh.

packages_host="cmake ninja-build g++ binutils googletest"
packages_sanitize="cmake ninja-build g++ clang libclang-rt-dev binutils googletest"
packages_windows="cmake ninja-build gcc g++-mingw-w64-x86-64-posix binutils googletest wine wine64 fonts-wine xvfb util-linux"
packages_release="gcc git perl zip unzip cmark-gfm"
packages_pictures="imagemagick locales"
packages_machine="qemu-system-x86 imagemagick"
packages_display="x11-utils locales"
packages_bare="debootstrap git util-linux"
packages_lint="cmake ninja-build g++ g++-mingw-w64-x86-64-posix binutils googletest clang-format clang-tidy git perl"
packages_coverage="cmake ninja-build g++ binutils googletest gcovr"
packages_fuzz="cmake ninja-build g++ clang libclang-rt-dev binutils"
packages_bench="cmake ninja-build g++ libbenchmark-dev"
packages_compare="pkgconf libinih-dev libsimpleini-dev libglib2.0-dev libtomlplusplus-dev"

# install_packages LIST: installs the missing packages of packages_LIST.
install_packages() {
    local list=packages_$1 package missing=() as_root=''
    if ! command -v apt-get >/dev/null; then
        echo "== no apt-get here; these Debian packages are needed, or their equivalents: ${!list}"
        return 0
    fi
    for package in ${!list}; do
        dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    echo "== missing here: ${missing[*]}"
    # Only the emulator itself: it is large enough without the recommended packages.
    [ "$1" != machine ] || missing+=(--no-install-recommends)
    if [ "$(id -u)" != 0 ]; then
        as_root=sudo
        # sudo must ask for the password now: later the progress line would overwrite the prompt.
        if ! command -v sudo >/dev/null || ! sudo -v; then
            echo "== you may not install here; ask an administrator for: apt-get install ${missing[*]}" >&2
            return 1
        fi
    fi
    if ! with_progress "installing" build/install.log call_apt "$as_root" "${missing[@]}"; then
        grep -v status: build/install.log | tail -n 5
        return 1
    fi
}

# call_apt AS_ROOT ARG ...: installs packages. Waits for another apt that is running: for the lock of the package lists by
# trying again, because apt-get update does not wait. Continues when the script is interrupted, because half-installed
# packages would disturb all later work.
call_apt() {
    local as_root=$1
    shift
    trap '' TERM
    $as_root env DEBIAN_FRONTEND=noninteractive sh -c '
        apt-get update -qq || { sleep 15; apt-get update -qq; } || exit
        apt-get install -y -o DPkg::Lock::Timeout=600 -o APT::Status-Fd=1 "$@"
    ' sh "$@"
}
