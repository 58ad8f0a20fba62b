# Sourced by the commands: installs what is missing, and builds. Needs a network only when something is missing.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

packages_to_build="cmake ninja-build g++ pkg-config qt6-base-dev qt6-svg-dev qt6-translations-l10n libgl-dev libxcb1-dev
    libcups2-dev zlib1g-dev fonts-dejavu-core hershey-fonts-data"
packages_to_test="libgtest-dev clang-format clang-tidy python3 python3-numpy python3-pil locales xvfb xauth xdotool
    wmctrl openbox imagemagick x11-utils cups-daemon cups-client poppler-utils librsvg2-bin gnuplot-nox plotutils"
packages_to_install="librsvg2-bin gzip python3"
packages_to_try_installed="desktop-file-utils shared-mime-info libglib2.0-bin xdg-utils bubblewrap bash-completion fish"
packages_to_package="dpkg-dev file lintian appstream mandoc zsh apparmor"
packages_to_fuzz="clang libclang-rt-14-dev libgtest-dev"
packages_to_attack="python3 util-linux xvfb xauth openbox x11-utils x11-xkb-utils poppler-utils librsvg2-bin imagemagick"
packages_to_bench="libbenchmark-dev python3"

# What a build is told whose products a package is made of.
to_be_installed=(-DKEL_INSTALL=ON -DCMAKE_INSTALL_PREFIX=/usr)

# install_packages NAME...: those that are not there yet.
install_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "installing ${missing[*]}" >&2
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq >&2
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
}

# build PRESET [CMAKE OPTION...]: into build/PRESET; what the tools say is shown only when they fail.
build() {
    local preset=$1 log
    shift
    mkdir -p "$root/build"
    log="$root/build/$preset.log"
    echo "building $preset" >&2
    if ! (cd "$root" && cmake --preset "$preset" "$@" && cmake --build --preset "$preset") >"$log" 2>&1; then
        cat "$log" >&2
        return 1
    fi
}
