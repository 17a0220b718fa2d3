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

isThere() {
    if [[ $1 == /* ]]; then [[ -e $1 ]]; else command -v "$1" >/dev/null; fi
}

# install PACKAGE=PROOF...: installs each package whose proof, a command or the full path of a file, is not there.
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

needsConfiguring() {
    local folder=$1 tests=$2
    [[ ! -e $folder/build.ninja ]] && return 0
    [[ $tests == ON ]] && ! grep -q '^HARBORLANTERN_TESTS:BOOL=ON' "$folder/CMakeCache.txt"
}

# build PRESET TESTS TARGET...: builds the targets in build/PRESET, which is configured first if that was not done
# yet. TESTS is ON or OFF; OFF leaves tests on where they were on.
build() {
    local preset=$1 tests=$2 folder=$root/build/$1 lock
    shift 2
    mkdir -p "$folder" || fail "The build folder cannot be made."
    exec {lock}>"$folder/lock" || fail "The build folder cannot be written."
    flock -n "$lock" || { say "Waiting for another build ..." && flock "$lock"; }

    # In place once the build has succeeded: a source that was changed since this moment is newer.
    touch "$folder/built.begun"
    if needsConfiguring "$folder" "$tests"; then
        say "Configuring build/$preset ..."
        quietly cmake -S "$root" --preset "$preset" "-DHARBORLANTERN_TESTS=$tests" || fail "Configuring failed."
    fi
    say "Building $* in build/$preset ..."
    quietly ninja -C "$folder" --quiet "$@" || fail "The build failed."
    mv "$folder/built.begun" "$folder/built"
    exec {lock}>&-
}

# Whether nothing that the build of this preset reads was changed since it succeeded. Folders count too, so that
# a file that was removed is noticed.
upToDate() {
    local built=$root/build/$1/built
    [[ -e $built ]] || return 1
    [[ -z $(find "$root"/{src,lang,cmake,CMakeLists.txt,CMakePresets.json} -newer "$built" -print -quit 2>/dev/null) ]]
}
