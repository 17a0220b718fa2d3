#!/usr/bin/env bash
# Installs the packages of a folder into a fresh Debian of the same release as this one, tries them there as a
# user without rights, and removes them again. The last line says "N passed, N failed"; the status is 0 only
# if none failed.
#
#   tools/package_test.sh FOLDER
#
# Needs root, and the network for debootstrap and for the libraries of the window. Downloads are kept in
# build/package/debs for the next time. Mounts and processes are in namespaces of their own and end with the
# script.
set -euo pipefail

root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
# shellcheck source=tools/setup.sh
source "$root/tools/setup.sh"

# --- outside: a fresh system

if [[ ${1-} != --inside ]]; then
    packages=$(readlink -e "${1:?the folder with the packages}")
    if ((EUID != 0)); then fail "Only root can set up a system to install into."; fi
    install debootstrap=debootstrap xvfb=Xvfb x11-utils=xwininfo appstream=appstreamcli man-db=man \
        desktop-file-utils=desktop-file-validate lintian=lintian
    debs=$root/build/package/debs
    system=$(mktemp -d)
    trap 'rm -rf --one-file-system "$system"' EXIT
    chmod 755 "$system"
    mkdir -p "$debs/partial"
    # shellcheck source=/dev/null
    release=$(. /etc/os-release && echo "$VERSION_CODENAME")
    say "Setting up a fresh $release ..."
    quietly debootstrap --variant=minbase --cache-dir="$debs" "$release" "$system" || fail "debootstrap failed."
    unshare --mount --pid --mount-proc --fork --kill-child "$0" --inside "$packages" "$system" "$debs"
    exit
fi

# --- inside

packages=$2 system=$3 debs=$4
work=$system/home/ada
ada=(chroot --userspec=ada:ada "$system" env -i HOME=/home/ada PATH=/usr/bin:/bin LC_ALL=C.UTF-8)
passed=0 failed=0

# check PROMISE COMMAND...: runs the command and counts whether the promise is kept.
check() {
    local output
    if output=$("${@:2}" 2>&1 </dev/null); then passed=$((passed + 1)); else
        failed=$((failed + 1))
        say "FAILED: $1" "$output"
    fi
}

asRoot() { chroot "$system" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@"; }
asUser() { "${ada[@]}" "$@"; }
apt() { asRoot apt-get -q -y --no-install-recommends "$@"; }

# ends STATUS TEXT COMMAND...: checks that the command ends with this status and prints something with TEXT in
# it.
ends() {
    local output status=0
    output=$("${@:3}" 2>&1) || status=$?
    echo "Status $status: $output"
    ((status == $1)) && [[ $output == *"$2"* ]]
}

isReport() { [[ $(head -n 1 "$1") == '"Path","Size (Bytes)","Files","Folders"'* ]] && grep -q '^"/usr/share",' "$1"; }
isAbsent() { ! compgen -G "$1" && [[ ! -e $1 ]]; }

# Checks that no file of the system has our name. The users' own files stay, and so do records of former
# installations.
hasNoTraces() {
    local folder passedOver=()
    for folder in home tmp srv var/log var/cache/apt; do passedOver+=(-o -path "$system/$folder"); done
    [[ -z $(find "$system" -xdev \( "${passedOver[@]:1}" \) -prune -o -iname '*harborlantern*' -print | tee /dev/stderr) ]]
}

# writesOnlyBelow FOLDER COMMAND...: checks that the command changes nothing in the user's home outside of
# this folder.
writesOnlyBelow() {
    local before
    before=$(cd "$work" && find . -mindepth 1 -path "./$1" -prune -o -printf '%p %T@ %s\n' | sort)
    "${@:2}" || return
    diff <(echo "$before") <(cd "$work" && find . -mindepth 1 -path "./$1" -prune -o -printf '%p %T@ %s\n' | sort)
}

hasOnlyTheseLibraries() {
    local depends others
    depends=$(dpkg-deb -f "$packages"/harborlantern_*.deb Depends) && [[ $depends ]] || return
    others=$(tr ',' '\n' <<<"$depends" | sed 's/ *(.*//; s/ //g' | grep -vx -e libc6 -e libstdc++6 -e libgcc-s1) || return 0
    echo "$others"
    return 1
}

# showsPage FILE TEXT: checks that a page of the manual is shown without a warning; the shown page is written
# to TEXT.
showsPage() {
    local warnings
    warnings=$(LC_ALL=C.UTF-8 man --warnings -P cat "$1" 2>&1 >"$2") && [[ -z $warnings ]] && return
    echo "$warnings"
    return 1
}

namesNoPath() {
    local package folder
    for package in "$packages"/*.deb; do
        folder=$(mktemp -d "$system/tmp/XXXXXX")
        dpkg-deb -x "$package" "$folder" || return
        find "$folder" -type f -name '*.gz' -exec gunzip -f {} + || return
        ! grep -rlF "$root" "$folder" || return
        rm -r "$folder"
    done
}

# knowsSwitches FILE: checks that the file has each switch that the help tells.
knowsSwitches() {
    local file=$1 switch told
    told=$(asUser harborlantern --help | grep -oE '(^  |, )-[-a-zA-Z]+' | tr -d ' ,N')
    [[ -n $told ]] || return
    for switch in $told; do
        switch=${switch##*-}
        if [[ $switch ]] && ! grep -qE -- "(-|-[osl] )${switch}[0-9]?\\b" "$file"; then
            echo "$switch"
            return 1
        fi
    done
}

# Checks that the pages are there, with the pictures that they show.
hasDocs() {
    local folder=$system/usr/share/doc/harborlantern file
    for file in $(cd "$root/docs" && ls ./*.md) $(grep -ohE '\]\([-a-z]+\.png' "$root"/docs/*.md | sed 's/](//'); do
        [[ -s $folder/$file ]] || { echo "$file" && return 1; }
    done
}

# Checks that the program, the modules and the helpers that open strangers' files have been hardened. A file
# all of whose calls were proven safe contains no checked call, so for that the commands of the build are
# examined.
isHardened() {
    local file facts wanted soft=0
    for file in "$system"/usr/lib/harborlantern/harborlantern*; do
        facts=$(LC_ALL=C readelf -hldsW "$file")
        for wanted in 'Type: +DYN' GNU_RELRO 'BIND_NOW|Flags: NOW' __stack_chk_fail; do
            grep -qE -- "$wanted" <<<"$facts" || { echo "${file##*/}: no $wanted" && soft=1; }
        done
    done
    if grep '"command":' "$root/build/package/compile_commands.json" | grep -vE -- '-O2 .*-D_FORTIFY_SOURCE=[23]'; then soft=1; fi
    return "$soft"
}

# Checks that no viewer comes along, even with recommended packages. It is not installed yet.
bringsNoViewer() {
    local wouldBe
    wouldBe=$(asRoot apt-get -s -o APT::Install-Recommends=true install "$1") || return
    grep -q '^Inst harborlantern-gui ' <<<"$wouldBe" &&
        ! grep -E '^Inst (gstreamer|libqt6(pdf|multimedia)|libreoffice|unrtf)' <<<"$wouldBe"
}

# startsItsOwn PACKAGE FILE: checks that the commands of a desktop entry belong to the package.
startsItsOwn() {
    local command
    while read -r command; do
        asRoot dpkg -L "$1" | grep -x "/usr/bin/$command" || return
    done < <(sed -nE 's/^(Try)?Exec=([^ ]*).*/\2/p' "$2")
}

# Prints errors, and warnings except those that a package outside of Debian cannot avoid.
lintianFinds() {
    lintian --allow-root --no-cfg --tag-display-limit 0 --fail-on error \
        --suppress-tags bogus-mail-host,bogus-mail-host-in-debian-changelog,initial-upload-closes-no-bugs "$packages"/*.deb
}

startScreen() {
    # Without -noreset the server would be away for a moment each time that its only client leaves.
    Xvfb -displayfd 3 -screen 0 1000x700x24 -ac -noreset -nolisten tcp 3>"$system/display" >/dev/null 2>&1 &
    for ((i = 0; i < 100; i++)); do [[ -s $system/display ]] && break; sleep 0.1; done
    display=:$(<"$system/display")
    mkdir -p "$system/tmp/.X11-unix"
    mount --bind /tmp/.X11-unix "$system/tmp/.X11-unix"
}

# showsWindow EDITION COMMAND...: checks that within 20 seconds a window appears whose version is followed by
# EDITION; then the program is ended.
showsWindow() {
    local window=1 program
    "${ada[@]}" "DISPLAY=$display" "${@:2}" &
    program=$!
    for ((i = 0; i < 200 && window != 0; i++)); do
        sleep 0.1
        if xwininfo -display "$display" -root -tree | grep -q "\"Harborlantern [0-9.]*$1\""; then window=0; fi
    done
    kill "$program" || true
    wait "$program" || true
    return "$window"
}

mount -t proc proc "$system/proc"
mount --bind "$debs" "$system/var/cache/apt/archives"
cp /etc/resolv.conf "$system/etc/resolv.conf"
cp "$packages"/* "$system/srv"
quietly asRoot useradd --create-home ada
quietly apt update

say "Trying the package without a window ..."
check "it depends on the C++ library and libc alone" hasOnlyTheseLibraries
check "it knows no path of the machine that built it" namesNoPath
check "it is installed with no other package" asRoot sh -c 'dpkg -i /srv/harborlantern_*.deb'
check "it tells its version" ends 0 "Harborlantern " asUser harborlantern --version
check "it writes nothing but the report" writesOnlyBelow report.csv \
    ends 0 "" asUser harborlantern -s /home/ada/report.csv /usr/share
check "the report is one" isReport "$work/report.csv"
check "German texts are there" ends 0 Aufruf: asUser LC_ALL=de_DE.UTF-8 harborlantern --help
check "English texts are there" ends 0 Usage: asUser harborlantern --help
check "a user without a home gets a report" ends 0 "" \
    chroot --userspec=4242:4242 "$system" env -i /usr/bin/harborlantern -s /tmp/report.csv /usr/share
check "the report of a user without a home is one" isReport "$system/tmp/report.csv"
check "no window is status 3, and says which package has it" ends 3 " (harborlantern-gui)" asUser harborlantern /usr
check "no window makes no folder" isAbsent "$work/.config"
for page in man1/harborlantern.1.gz de/man1/harborlantern.1.gz; do
    check "$page has no faults" showsPage "$system/usr/share/man/$page" "$system/tmp/page"
    check "$page knows the switches" knowsSwitches "$system/tmp/page"
done
for file in bash-completion/completions/harborlantern zsh/vendor-completions/_harborlantern \
    fish/vendor_completions.d/harborlantern.fish; do
    check "$file knows the switches" knowsSwitches "$system/usr/share/$file"
done

check "the pages of docs/ are there, with their pictures" hasDocs
check "the fleet's script is there" ends 0 Usage: asUser /usr/share/harborlantern/fleet/fleet --help
check "what is new is there" gzip -t "$system/usr/share/doc/harborlantern/NEWS.gz"

say "Trying the package with the window ..."
window=/srv/$(cd "$packages" && echo harborlantern-gui_*.deb)
check "it brings no viewer" bringsNoViewer "$window"
check "it is installed" apt install "$window"
check "what is installed is hardened" isHardened
check "no screen is status 3" ends 3 "" asUser harborlantern /usr/share
startScreen
check "the window shows itself, and writes only into the user's settings" writesOnlyBelow .config \
    showsWindow "" harborlantern-gui /usr/share
check "the settings are the user's" test -s "$work/.config/harborlantern/Harborlantern.ini"
check "nobody else looks into them" test "$(stat -c %a "$work/.config/harborlantern")" = 700
check "the desktop entry is valid" desktop-file-validate "$system/usr/share/applications/harborlantern.desktop"
check "the desktop entry starts what comes with it" startsItsOwn harborlantern-gui \
    "$system/usr/share/applications/harborlantern.desktop"
# An id that follows from a domain name would need a domain.
check "the catalogue entry is valid" appstreamcli validate --no-net --override=cid-desktopapp-is-not-rdns=info "$system"/usr/share/metainfo/*harborlantern*
for size in 16 512; do
    check "there is an icon of $size" test -s "$system/usr/share/icons/hicolor/${size}x$size/apps/harborlantern.png"
done
check "lintian finds no error" lintianFinds

say "Removing them ..."
check "the window goes alone" apt purge harborlantern-gui
check "a report is still written" ends 0 "" asUser harborlantern -s /home/ada/report.csv /usr/share
check "the log is the user's" test -s "$work/.config/harborlantern/Harborlantern.log"
check "the rest goes" apt purge harborlantern
check "nothing is left" hasNoTraces
check "the user's settings stay" test -s "$work/.config/harborlantern/Harborlantern.ini"

say "Trying the copy that needs no installing ..."
check "it is unpacked" asUser sh -c 'mkdir ~/stick && tar -C ~/stick -xzf /srv/harborlantern-*.tar.gz'
stick=stick/$(ls "$work/stick")
check "it writes into its own folder alone" writesOnlyBelow "$stick" ends 0 "" \
    asUser "/home/ada/$stick/harborlantern" -s "/home/ada/$stick/report.csv" /usr/share
check "its log is there" test -s "$work/$stick/Harborlantern.log"
check "its window does so too" writesOnlyBelow "$stick" \
    showsWindow " (Portable Edition)" "/home/ada/$stick/harborlantern" /usr/share

echo "$passed passed, $failed failed"
((failed == 0))
