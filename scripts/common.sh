# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# What the project's commands share. Sourced by bash, with set -euo pipefail in force.

program=${0##*/}
# Where the commands note what they have started, until the next boot.
state=/run/zorvex-dev

say() { printf '%s: %s\n' "$program" "$*" >&2; }

die()
{
    say "$*"
    exit 1
}

# Runs a command as root; the caller has said what for.
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
# themselves. Testing is followed as well; it moves, so that nothing that must pass depends on it.
declare -A release_titles=([bookworm]='Debian 12 (bookworm)' [trixie]='Debian 13 (trixie)' [testing]='Debian testing')

# The release that this is, by the name of its archive; nothing for one that the project is not made for.
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

# Ends the command, before it has touched anything, on a release that it is not made for.
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
            if (index(groups, " " when[1] " ") && (when[2] == "" || index("," when[2] ",", "," release ",")))
                print $1
        }' "$(dirname "${BASH_SOURCE[0]}")/packages.txt"
}

# continue_as_root REASON "$@": starts the running command anew as root, unless it is root's already.
continue_as_root()
{
    local reason=$1
    shift
    [ "$(id -u)" = 0 ] && return
    command -v sudo >/dev/null || die "$reason, which needs root, and there is no sudo: run it as root"
    say "$reason: asks for administrator rights"
    exec sudo -- "$0" "$@"
}

# lock NAME: one command of a name at a time; held until the command ends. Daemons are started with 9>&-, lest they
# hold the lock as long as they live.
lock()
{
    mkdir -p "$state"
    exec 9>"$state/$1.lock"
    flock 9
}

# What tells a process from a later one with the same number: the moment it began. Empty when it has ended.
start_time()
{
    local stat
    stat=$(cat "/proc/$1/stat" 2>/dev/null) || return 0
    # The name, in brackets, may hold anything; the fields after it are numbers.
    # shellcheck disable=SC2086
    set -- ${stat##*) }
    printf '%s' "${20}"
}

# Who uses something (KIND), so that the last one to leave puts the light out. A holder is a process, which loses its
# hold when it ends, or "manual", which someone took by hand and gives back by hand.
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

# release KIND HOLDER: gives the hold back, and succeeds when nobody holds it any more.
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

# our_files PATTERN...: the project's files whose names match, relative to its root, where the caller is. What git
# ignores is not ours; without git (an unpacked archive), that is the build folder.
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

# fail_on OUTPUT SENTENCE: a check fails when it has found something, and says what is wrong with it.
fail_on()
{
    [ -n "$1" ] || exit 0
    printf '%s\n' "$1" >&2
    die "$2"
}
