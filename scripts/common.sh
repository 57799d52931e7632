# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the project's commands share. Sourced by bash, with set -euo pipefail in force.

program=${0##*/}
# Where the commands note what they have started. Empty after a boot.
state=/run/zorvex-dev

say() { printf '%s: %s\n' "$program" "$*" >&2; }

die()
{
    say "$*"
    exit 1
}

# Runs a command as root. The caller has already said why.
as_root()
{
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo -- "$@"
    else
        die "this needs root, and there is no sudo: run it as root"
    fi
}

# The Debian releases that the project is shown to work on, oldest first: the name of their archive, and what they call
# themselves. Testing is supported as well, but it changes all the time, so nothing that must pass depends on it.
declare -A release_titles=([bookworm]='Debian 12 (bookworm)' [trixie]='Debian 13 (trixie)' [testing]='Debian testing')

# The release of this machine, by the name of its archive; empty when the project does not support it.
this_release()
(
    ID='' VERSION_ID=''
    # shellcheck source=/dev/null
    . /etc/os-release 2>/dev/null || true
    case $ID:$VERSION_ID in
    debian:12) echo bookworm ;;
    debian:13) echo trixie ;;
    debian:) echo testing ;; # it has no number yet
    esac
)

# Ends the command on a release that is not supported. Called before anything is touched.
require_supported_release()
{
    [ -z "$(this_release)" ] || return 0
    die "$(. /etc/os-release 2>/dev/null; echo "${PRETTY_NAME:-this system}") is not supported: this needs" \
        "${release_titles[bookworm]}, ${release_titles[trixie]} or ${release_titles[testing]}"
}

# project_packages RELEASE GROUP...: the packages that scripts/packages.txt lists for these groups in this release.
project_packages()
{
    awk -v release="$1" -v groups=" ${*:2} " '
        /^#/ || !NF { next }
        {
            split($2, when, "@")
            if (when[2] != "" && !index("," when[2] ",", "," release ","))
                next
            count = split(when[1], needed, "+")
            for (i = 1; i <= count; i++)
                if (index(groups, " " needed[i] " ")) {
                    print $1
                    next
                }
        }' "$(dirname "${BASH_SOURCE[0]}")/packages.txt"
}

# continue_as_root REASON "$@": starts the running command again as root, unless it already runs as root.
continue_as_root()
{
    local reason=$1
    shift
    [ "$(id -u)" = 0 ] && return
    command -v sudo >/dev/null || die "$reason, which needs root, and there is no sudo: run it as root"
    say "$reason: asks for administrator rights"
    exec sudo -- "$0" "$@"
}

# lock NAME: lets one command at a time use the name; held until the command ends. Daemons are started with 9>&-, so
# that they do not hold the lock for as long as they live.
lock()
{
    mkdir -p "$state"
    exec 9>"$state/$1.lock"
    flock 9
}

# The time at which a process began, which tells it from a later one with the same number. Empty when it has ended.
start_time()
{
    local stat
    stat=$(cat "/proc/$1/stat" 2>/dev/null) || return 0
    # The name, in brackets, may contain anything; the fields after it are numbers.
    # shellcheck disable=SC2086
    set -- ${stat##*) }
    printf '%s' "${20}"
}

# hold KIND HOLDER: notes that the holder uses something, so that it is kept until nobody does. A holder is a process,
# whose hold ends with it, or "manual", for a hold that is taken and given back by hand.
hold()
{
    local kind=$1 holder=$2 began=manual
    mkdir -p "$state/$kind.holders"
    if [ "$holder" != manual ]; then
        began=$(start_time "$holder")
        [ -n "$began" ] || die "there is no process $holder"
    fi
    printf '%s\n' "$began" >"$state/$kind.holders/$holder"
}

# release KIND HOLDER: gives the hold back. Succeeds when there is no other holder.
release()
{
    local kind=$1 holder=$2 file
    rm -f "$state/$kind.holders/$holder"
    for file in "$state/$kind.holders"/*; do
        [ -e "$file" ] || return 0
        holder=${file##*/}
        [ "$holder" = manual ] && return 1
        [ "$(start_time "$holder")" = "$(cat "$file")" ] && return 1
        rm -f "$file"
    done
    return 0
}

# parse_holder [--for PID]: prints the holder that the options name.
parse_holder()
{
    case $#:${1-}:${2-} in
    0::) printf 'manual' ;;
    2:--for:*[!0-9]* | 2:--for:) usage ;;
    2:--for:*) printf '%s' "$2" ;;
    *) usage ;;
    esac
}

# our_files PATTERN...: the project's files whose names match, relative to its root, which is the current folder. Leaves
# out what git ignores, or without git (in an unpacked archive) the build folder.
our_files()
{
    if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        local file
        git ls-files --cached --others --exclude-standard -- "$@" | while read -r file; do
            [ ! -e "$file" ] || printf '%s\n' "$file"
        done
    else
        local pattern tests=()
        for pattern in "$@"; do
            tests+=(-o -path "./$pattern")
        done
        find . -path ./build -prune -o -type f \( "${tests[@]:1}" \) -print | sed 's|^\./||'
    fi
}

# fail_on OUTPUT SENTENCE: fails a check that has found something, and says what is wrong with it.
fail_on()
{
    [ -n "$1" ] || exit 0
    printf '%s\n' "$1" >&2
    die "$2"
}
