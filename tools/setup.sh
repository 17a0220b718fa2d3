# What run and check share: installing packages, configuring, building. To be sourced, with `root` set to the
# project's folder. Every step says one line on standard error, and nothing where there is nothing to do.
# shellcheck shell=bash
# shellcheck disable=SC2154  # root

# Status of a run that ends before the program starts; the program's own are 0 to 3.
readonly kSetupFailed=4

say() { printf '%s\n' "$*" >&2; }

fail() {
    say "$1"
    exit "$kSetupFailed"
}

# quietly COMMAND...: keeps the output back, and shows it if the command fails.
quietly() {
    local output status=0
    output=$("$@" 2>&1 </dev/null) || status=$?
    if ((status != 0)); then say "$output"; fi
    return "$status"
}

# isThere PROOF: a program of the PATH, or patterns of full paths, one of which fits a file, with a colon between them.
isThere() {
    local pattern patterns
    if [[ $1 != /* ]]; then
        type -P "$1" >/dev/null
        return
    fi
    IFS=: read -ra patterns <<<"$1"
    for pattern in "${patterns[@]}"; do compgen -G "$pattern" >/dev/null && return; done
    return 1
}

# What the program alone is built with; what the window needs to be built and to look well. Any of the usual fonts and
# icon themes does.
readonly kProgramPackages=(g++=g++ cmake=cmake ninja-build=ninja)
readonly kFonts=/usr/share/fonts/*/*
readonly kIcons=/usr/share/icons
readonly kWindowPackages=(
    'qt6-base-dev=/usr/lib/*/cmake/Qt6Widgets/Qt6WidgetsConfig.cmake:/usr/lib*/cmake/Qt6Widgets/Qt6WidgetsConfig.cmake'
    'qt6-svg-dev=/usr/lib/*/cmake/Qt6Svg/Qt6SvgConfig.cmake:/usr/lib*/cmake/Qt6Svg/Qt6SvgConfig.cmake'
    'libglib2.0-dev=/usr/lib/*/pkgconfig/gio-unix-2.0.pc:/usr/lib*/pkgconfig/gio-unix-2.0.pc' pkg-config=pkg-config
    "fonts-dejavu-core=$kFonts/DejaVuSans.ttf:$kFonts/NotoSans-Regular.ttf:$kFonts/LiberationSans-Regular.ttf"
    "adwaita-icon-theme=$kIcons/Adwaita/index.theme:$kIcons/breeze/index.theme:$kIcons/Papirus/index.theme")

# Viewers of the preview: what they are built with, and what they show and play with; and the texts of the toolkit's own
# dialogs. Wanted, not needed.
readonly kPdfConfig='/usr/lib/*/cmake/Qt6Pdf/Qt6PdfConfig.cmake:/usr/lib*/cmake/Qt6Pdf/Qt6PdfConfig.cmake'
readonly kMediaConfig='/usr/lib/*/cmake/Qt6Multimedia/Qt6MultimediaConfig.cmake:/usr/lib*/cmake/Qt6Multimedia/Qt6MultimediaConfig.cmake'
readonly kPlugins=/usr/lib/*/gstreamer-1.0
readonly kWantedPackages=(
    qt6-translations-l10n=/usr/share/qt6/translations/qtbase_de.qm
    "qt6-pdf-dev=$kPdfConfig" "qt6-multimedia-dev=$kMediaConfig" unrtf=unrtf
    'qt6-image-formats-plugins=/usr/lib/*/qt6/plugins/imageformats/libqtiff.so'
    "gstreamer1.0-plugins-base=$kPlugins/libgstplayback.so" "gstreamer1.0-plugins-good=$kPlugins/libgstisomp4.so"
    "gstreamer1.0-libav=$kPlugins/libgstlibav.so")

# installWindow: what the window needs, and what it would like to have, if that can be had.
installWindow() {
    install "${kProgramPackages[@]}" "${kWindowPackages[@]}"
    (install "${kWantedPackages[@]}") || say "The window will be without what these are for."
}

# install PACKAGE=PROOF...: installs each package whose proof is not there.
install() {
    local missing=() asRoot=() pair
    for pair in "$@"; do isThere "${pair#*=}" || missing+=("${pair%%=*}"); done
    ((${#missing[@]})) || return 0

    isThere apt-get || fail "Missing: ${missing[*]}. This can install packages on Debian only; please install them yourself."
    if ((EUID != 0)); then
        isThere sudo || fail "Missing: ${missing[*]}. You are not root and there is no sudo; let root do: apt-get install ${missing[*]}"
        asRoot=(sudo)
    fi
    say "Installing ${missing[*]} ..."
    local apt=("${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300)
    quietly "${apt[@]}" update || fail "Installing failed: apt-get update."
    quietly "${apt[@]}" install --no-install-recommends "${missing[@]}" || fail "Installing failed: apt-get install ${missing[*]}"
}

# viewerIsNew CACHE LIBRARY PROOF: it was missing when the build was configured, and is there now.
viewerIsNew() { isThere "$3" && ! grep -q "^Qt6$2_DIR:PATH=/" "$1"; }

# Configured without the window where Qt was missing then, without the tests where only the program was wanted.
needsConfiguring() {
    local folder=$1 tests=$2 window=$3 cache=$1/CMakeCache.txt
    [[ ! -e $folder/build.ninja ]] && return 0
    [[ $tests == ON ]] && ! grep -q '^HARBORLANTERN_TESTS:BOOL=ON' "$cache" && return 0
    [[ $window == ON ]] && { viewerIsNew "$cache" Pdf "$kPdfConfig" || viewerIsNew "$cache" Multimedia "$kMediaConfig"; } &&
        return 0
    [[ $window == ON ]] && ! { grep -q '^Qt6_DIR:PATH=/' "$cache" && grep -q 'harborlantern-gui' "$folder/build.ninja"; }
}

# build PRESET TESTS TARGET...: builds the targets in build/PRESET, which is configured first if that was not done
# yet. TESTS is ON or OFF; OFF leaves tests on where they were on. Whether the window can be built is found out
# when a target needs it: "all", or the module.
build() {
    local preset=$1 tests=$2 folder=$root/build/$1 window=OFF lock target
    shift 2
    mkdir -p "$folder" || fail "The build folder cannot be made."
    exec {lock}>"$folder/lock" || fail "The build folder cannot be written."
    flock -n "$lock" || { say "Waiting for another build ..." && flock "$lock"; }

    if [[ " $* " == *" all "* || " $* " == *" harborlantern-gui "* ]]; then window=ON; fi
    # In place once the build has succeeded: a source that was changed since this moment is newer.
    touch "$folder/built.begun"
    if needsConfiguring "$folder" "$tests" "$window"; then
        say "Configuring build/$preset ..."
        if grep -qs '^HARBORLANTERN_TESTS:BOOL=ON' "$folder/CMakeCache.txt"; then tests=ON; fi
        quietly cmake -S "$root" --preset "$preset" "-DHARBORLANTERN_TESTS=$tests" || fail "Configuring failed."
    fi
    say "Building $* in build/$preset ..."
    quietly ninja -C "$folder" --quiet "$@" || fail "The build failed."
    for target in "$@"; do cp -p "$folder/built.begun" "$folder/built.$target"; done
    exec {lock}>&-
}

# upToDate PRESET TARGET: whether nothing that the build reads was changed since this target was built. Folders
# count too, so that a file that was removed is noticed.
upToDate() {
    local built
    for built in "$root/build/$1/built.$2" "$root/build/$1/built.all"; do
        [[ -e $built && -z $(find "$root"/{src,lang,data,cmake,CMakeLists.txt,CMakePresets.json} -newer "$built" \
            -print -quit 2>/dev/null) ]] && return 0
    done
    return 1
}
