# Debian packages that the project needs, and their installation. Sourced by the scripts.

# To build and play.
packages_play="g++ cmake ninja-build pkg-config libfluidsynth-dev libasound2-dev timgm6mb-soundfont
    libcli11-dev libncurses-dev libuchardet-dev libsndfile1-dev libogg-dev nlohmann-json3-dev"
# To run the tests beside that.
packages_test="libgtest-dev libgmock-dev python3 abcmidi midicsv fp-compiler mono-mcs tmux dpkg-dev"
# To show the Windows player on a display that nobody sees.
packages_desktop="xvfb imagemagick"
# To fuzz, 32-bit too.
packages_fuzz="clang libclang-rt-dev g++-multilib"
# To measure beside other programs.
packages_bench="libbenchmark-dev libfluidsynth-dev libwildmidi-dev libsmf-dev libportsmf-dev midicsv valgrind
    gnuplot-nox python3"
# To check the code as CI does.
packages_check="clang clang-format clang-tidy libclang-rt-dev g++-mingw-w64-i686 binutils-mingw-w64-i686 googletest
    llvm lld doxygen"

missing_packages() {
    local package
    for package in "$@"; do
        dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
            echo "$package"
    done
}

# Installs what is missing of the packages named, or says what it cannot do.
install_packages() {
    if ! command -v dpkg-query >/dev/null; then
        echo "This script installs packages on Debian and Ubuntu only. Elsewhere, install what these"
        echo "Debian packages hold and build with: cmake --preset linux && cmake --build --preset linux"
        printf '%s\n' "$@" | sed 's/^/  /'
        return 1
    fi >&2
    local missing as_root=""
    missing=$(missing_packages "$@")
    [ -z "$missing" ] && return 0
    if [ "$(id -u)" != 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "These packages are missing, and there is neither root nor sudo to install them:" >&2
            printf '%s\n' "$missing" | sed 's/^/  /' >&2
            return 1
        fi
        as_root=sudo
    fi
    echo "Installing: $(echo $missing)" >&2
    $as_root apt-get update -qq >&2 || true
    DEBIAN_FRONTEND=noninteractive $as_root apt-get install -y -qq $missing >/dev/null
}
