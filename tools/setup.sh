# What run and check share: installing packages, configuring, building. It is sourced, with `root` set to the
# project's folder. Every step that has something to do writes one line to standard error.
# shellcheck shell=bash
# shellcheck disable=SC2034,SC2125,SC2154,SC2191  # root comes from, and lists go to, who sources this; they have patterns in them

# The status of a run that ends before the program starts; the program's own are 0 to 3.
readonly kSetupFailed=4

say() { printf '%s\n' "$*" >&2; }

fail() {
    say "$1"
    exit "$kSetupFailed"
}

onTerminal() { [[ -t 2 && ${TERM-dumb} != dumb ]]; }

# showLast: passes its input on; a terminal meanwhile shows its last line.
showLast() {
    local line
    onTerminal || exec cat
    while IFS= read -r line; do
        line=${line%$'\r'}  # A line from a terminal, which sudo makes, ends in CR.
        printf '%s\n' "$line"
        printf '\r\e[K%.79s' "${line##*$'\r'}" >&2
    done
    printf '\r\e[K' >&2
}

# quietly COMMAND...: withholds the output and shows it if the command fails, without ninja's lines about what
# went well.
quietly() {
    local output status=0
    output=$("$@" 2>&1 </dev/null | showLast) || status=$?
    if ((status != 0)); then say "$(grep -v '^\[[0-9]*/[0-9]*\] ' <<<"$output")"; fi
    return "$status"
}

# isThere PROOF: tells whether a proof exists. It is a program of the PATH, or patterns of full paths with
# colons between them, one of which must fit a file.
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

# The packages with their proofs: those that the program alone is built with; those that the window needs to
# be built and to look well (any of the usual fonts and icon themes suffices); and, marked with "?", those
# that are wanted but not necessary: the texts of the toolkit's own dialogs, and viewers of the preview.
readonly kProgramPackages=(g++=g++ cmake=cmake ninja-build=ninja)
readonly kFonts=/usr/share/fonts/*/*
readonly kIcons=/usr/share/icons
readonly kPdfConfig='/usr/lib/*/cmake/Qt6Pdf/Qt6PdfConfig.cmake:/usr/lib*/cmake/Qt6Pdf/Qt6PdfConfig.cmake'
readonly kMediaConfig='/usr/lib/*/cmake/Qt6Multimedia/Qt6MultimediaConfig.cmake:/usr/lib*/cmake/Qt6Multimedia/Qt6MultimediaConfig.cmake'
readonly kGStreamer='/usr/lib/*/pkgconfig/gstreamer-1.0.pc:/usr/lib*/pkgconfig/gstreamer-1.0.pc'
readonly kWindowPackages=(
    "${kProgramPackages[@]}"
    'qt6-base-dev=/usr/lib/*/cmake/Qt6Widgets/Qt6WidgetsConfig.cmake:/usr/lib*/cmake/Qt6Widgets/Qt6WidgetsConfig.cmake'
    'qt6-svg-dev=/usr/lib/*/cmake/Qt6Svg/Qt6SvgConfig.cmake:/usr/lib*/cmake/Qt6Svg/Qt6SvgConfig.cmake'
    'libglib2.0-dev=/usr/lib/*/pkgconfig/gio-unix-2.0.pc:/usr/lib*/pkgconfig/gio-unix-2.0.pc' pkg-config=pkg-config
    "fonts-dejavu-core=$kFonts/DejaVuSans.ttf:$kFonts/NotoSans-Regular.ttf:$kFonts/LiberationSans-Regular.ttf"
    "adwaita-icon-theme=$kIcons/Adwaita/index.theme:$kIcons/breeze/index.theme:$kIcons/Papirus/index.theme"
    '?qt6-translations-l10n=/usr/share/qt6/translations/qtbase_de.qm' "?qt6-pdf-dev=$kPdfConfig" '?unrtf=unrtf'
    '?qt6-image-formats-plugins=/usr/lib/*/qt6/plugins/imageformats/libqtiff.so')

# The player of the preview doubles the number of packages, so ./run leaves it to the user; checks and
# packages include it.
readonly kPlugins=/usr/lib/*/gstreamer-1.0
readonly kPlayerPackages=(
    "?qt6-multimedia-dev=$kMediaConfig" "?libgstreamer1.0-dev=$kGStreamer"
    "?gstreamer1.0-plugins-base=$kPlugins/libgstplayback.so"
    "?gstreamer1.0-plugins-good=$kPlugins/libgstisomp4.so" "?gstreamer1.0-libav=$kPlugins/libgstlibav.so")

# aptGet ARGUMENT...: runs apt-get as root, in English.
aptGet() {
    local asRoot=()
    if ((EUID != 0)); then asRoot=(sudo); fi
    "${asRoot[@]}" env LC_ALL=C DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300 "$@"
}

# amount PACKAGE...: prints how much there is to install; the status is 1 if apt-get cannot. --print-uris
# installs nothing.
amount() {
    LC_ALL=C apt-get install -q --no-install-recommends --print-uris "$@" 2>/dev/null | awk '
        / newly installed, / { told = 1; packages = $1 + $3 }
        /^Need to get / { sub("/.*", "", $5); load = $4 " " $5 }
        /^After this operation, / { space = $4 " " $5 }
        END {
            if (!told) exit 1
            printf "%d package%s, %s to download, %s on the disk\n", packages, packages == 1 ? "" : "s", load, space
        }'
}

# mayInstall PACKAGE...: tells the user if installing is impossible.
mayInstall() {
    if ! isThere apt-get; then
        say "Missing: $*. This can install packages on Debian only; please install them yourself."
    elif ((EUID != 0)) && ! isThere sudo; then
        say "Missing: $*. You are not root and there is no sudo; let root do: apt-get install $*"
    else
        return 0
    fi
    return 1
}

# install [?]PACKAGE=PROOF...: installs all packages whose proof is missing at once. A marked one is left out
# if it is not available.
install() {
    local pair needed=() missing=() told=
    for pair in "$@"; do
        if isThere "${pair#*=}"; then continue; fi
        pair=${pair%%=*}
        [[ $pair == \?* ]] || needed+=("$pair")
        missing+=("${pair#\?}")
    done
    ((${#missing[@]})) || return 0

    if ! mayInstall "${missing[@]}"; then
        ((${#needed[@]} == 0)) || exit "$kSetupFailed"
        return 0
    fi
    say "Asking for ${missing[*]} ..."
    quietly aptGet update || fail "Installing failed: apt-get update."
    if ! told=$(amount "${missing[@]}"); then
        ((${#needed[@]})) || { say "They cannot be installed and are left out." && return 0; }
        missing=("${needed[@]}")
        told=$(amount "${missing[@]}") && say "Not all of them can be installed: ${missing[*]} alone."
    fi
    say "Installing $told ..."
    quietly aptGet -y install --no-install-recommends "${missing[@]}" ||
        fail "Installing failed: apt-get install ${missing[*]}"
}

# viewerIsNew FOLDER: tells whether a library for a viewer was missing when the build was configured, and is
# there now.
viewerIsNew() {
    { isThere "$kPdfConfig" && ! grep -q '^Qt6Pdf_DIR:PATH=/' "$1/CMakeCache.txt"; } ||
        { isThere "$kMediaConfig" && isThere "$kGStreamer" &&
            ! grep -q '^GStreamer_FOUND:INTERNAL=1' "$1/CMakeCache.txt"; }
}

# needsConfiguring FOLDER TESTS WINDOW: a build may have been configured without the window because Qt was
# missing, or without the tests because only the program was wanted.
needsConfiguring() {
    local folder=$1 tests=$2 window=$3 cache=$1/CMakeCache.txt
    [[ ! -e $folder/build.ninja ]] && return 0
    [[ $tests == ON ]] && ! grep -q '^HARBORLANTERN_TESTS:BOOL=ON' "$cache" && return 0
    [[ $window == ON ]] && viewerIsNew "$folder" && return 0
    [[ $window == ON ]] && ! { grep -q '^Qt6_DIR:PATH=/' "$cache" && grep -q 'harborlantern-gui' "$folder/build.ninja"; }
}

# build PRESET TESTS TARGET...: builds the targets in build/PRESET, which is configured first if it was not
# yet. TESTS is ON or OFF; OFF does not switch tests off that were on. Whether the window can be built is
# found out when a target needs it: "all", or the module.
build() {
    local preset=$1 tests=$2 folder=$root/build/$1 window=OFF lock target
    shift 2
    mkdir -p "$folder" || fail "The build folder cannot be made."
    exec {lock}>"$folder/lock" || fail "The build folder cannot be written."
    flock -n "$lock" || { say "Waiting for another build ..." && flock "$lock"; }

    if [[ " $* " == *" all "* || " $* " == *" harborlantern-gui "* ]]; then window=ON; fi
    # It is moved into place after the build: a source that was changed since this moment is newer.
    touch "$folder/built.begun"
    if needsConfiguring "$folder" "$tests" "$window"; then
        say "Configuring build/$preset ..."
        if grep -qs '^HARBORLANTERN_TESTS:BOOL=ON' "$folder/CMakeCache.txt"; then tests=ON; fi
        quietly cmake -S "$root" --preset "$preset" "-DHARBORLANTERN_TESTS=$tests" || fail "Configuring failed."
    fi
    say "Building $* in build/$preset ..."
    quietly ninja -C "$folder" "$@" || fail "The build failed."
    for target in "$@"; do cp -p "$folder/built.begun" "$folder/built.$target"; done
    exec {lock}>&-
}

# upToDate PRESET TARGET...: tells whether nothing that the build reads was changed since these targets were
# built. Folders count too, so that a removed file is noticed.
upToDate() {
    local folder=$root/build/$1 target built
    if [[ " $* " == *" harborlantern-gui "* ]] && viewerIsNew "$folder"; then return 1; fi
    for target in "${@:2}"; do
        for built in "$folder/built.$target" "$folder/built.all" ''; do
            [[ -e $built && -z $(find "$root"/{src,lang,data,cmake,CMakeLists.txt,CMakePresets.json} -newer "$built" \
                -print -quit 2>/dev/null) ]] && break
        done
        [[ $built ]] || return 1
    done
}
