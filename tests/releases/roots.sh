# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# Root folders of a Debian release: fetched once, kept in build/releases/, and lent with changes of their own to each
# test. Sourced by bash after scripts/common.sh; needs root.

mirror=${ZORVEX_DEBIAN_MIRROR:-http://deb.debian.org/debian}
kept_days=7

# begin_roots RELEASE "$@": starts the running command again in a mount namespace of its own: all mounts are made where
# nobody else sees them, and go with the last process of the command. What the machine mounts is seen in there: its disk
# service mounts volumes. Then makes $work, a folder in memory that goes with the command.
begin_roots()
{
    release=$1
    shift
    if [ "${ZORVEX_RELEASE_NAMESPACE-}" != yes ]; then
        ZORVEX_RELEASE_NAMESPACE=yes exec unshare --mount --propagation slave -- "$0" "$@"
    fi
    kept=$project/build/releases/$release
    work=$(mktemp -d --suffix=.zorvex-release)
    trap 'leave_roots' EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    mount -t tmpfs -o size=80%,mode=755 release-test "$work"
}

leave_roots()
{
    local status=$?
    trap '' INT TERM HUP
    set +e
    ! mountpoint -q "$work" || umount -R -l "$work"
    rm -rf --one-file-system "$work"
    exit "$status"
}

title() { printf '== %s: %s\n' "${release_titles[$release]}" "$*"; }

# logged COMMAND...: shows what it prints only when it fails.
logged()
{
    "$@" >"$work/log" 2>&1 && return
    tail -n 60 "$work/log" >&2
    die "${release_titles[$release]}: this fails: $*"
}

# in_root ROOT COMMAND...
in_root()
{
    local root=$1
    shift
    env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 \
        chroot "$root" "$@"
}

# make_root NAME UPPER LOWER...: a root, $work/NAME, that shows the folders LOWER, the first on top, and keeps its
# changes in UPPER.
make_root()
{
    local root=$work/$1 upper=$2 lower
    shift 2
    lower=$(IFS=:; printf '%s' "$*")
    mkdir -p "$root" "$upper" "$upper.work"
    mount -t overlay -o "lowerdir=$lower,upperdir=$upper,workdir=$upper.work" release "$root"
    mount -t proc proc "$root/proc"
    mount --rbind /dev "$root/dev"
}

drop_root() { umount -R -l "$work/$1"; }

# is_fresh FOLDER RECIPE: whether the folder was made by the recipe in the last days.
is_fresh()
{
    [ "$(cat "$1/recipe" 2>/dev/null)" = "$2" ] && [ -z "$(find "$1/recipe" -mtime +$((kept_days - 1)))" ]
}

fetch_empty_system()
{
    title "fetches an empty system"
    local script=()
    # debootstrap may be older than the release, which is made like every other.
    [ -e "/usr/share/debootstrap/scripts/$release" ] || script=(/usr/share/debootstrap/scripts/sid)
    logged debootstrap --variant=minbase "$release" "$kept/empty" "$mirror" "${script[@]}"
    # Services are not to be started in there, nothing in there has to outlive a power cut, and a mirror may stand still.
    printf '#!/bin/sh\nexit 101\n' >"$kept/empty/usr/sbin/policy-rc.d"
    chmod 755 "$kept/empty/usr/sbin/policy-rc.d"
    echo force-unsafe-io >"$kept/empty/etc/dpkg/dpkg.cfg.d/release-test"
    echo 'Acquire::Check-Valid-Until "false";' >"$kept/empty/etc/apt/apt.conf.d/release-test"
    cp /etc/resolv.conf "$kept/empty/etc/resolv.conf"
    logged in_root "$kept/empty" apt-get -q update
    logged in_root "$kept/empty" apt-get clean
}

fetch_build_system()
{
    title "fetches what the packages are built with"
    make_root fetched "$kept/build" "$kept/empty"
    mkdir -p "$work/fetched/source/debian"
    cp "$project/debian/control" "$work/fetched/source/debian"
    logged in_root "$work/fetched" apt-get -q -y install --no-install-recommends build-essential
    logged in_root "$work/fetched" apt-get -q -y build-dep --no-install-recommends /source
    logged in_root "$work/fetched" apt-get clean
    in_root "$work/fetched" useradd --create-home builder
    rm -r "$work/fetched/source"
    drop_root fetched
}

# Fetches the root folders of the release, unless they are kept: an empty system, and what the packages are built with.
fetch_systems()
{
    local recipe
    recipe=$(cat "$project/debian/control" "${BASH_SOURCE[0]}" | sha256sum)
    ! is_fresh "$kept" "$recipe" || return 0
    rm -rf --one-file-system "$kept"
    mkdir -p "$kept"
    fetch_empty_system
    fetch_build_system
    printf '%s\n' "$recipe" >"$kept/recipe"
}

# What the packages are made of.
sources_of_packages()
{
    (cd "$project" && our_files 'CMakeLists.txt' 'LICENSE' 'app/*' 'debian/*' 'disks/*' 'filesystems/*' 'operations/*' \
        'platform/*' 'resources/*' 'tools/*' 'ui/*' | sort | while read -r file; do sha256sum "$file"; done) | sha256sum
}

# build_packages OPTIONS: builds the packages as a distribution builds, with further options for debian/rules: as
# nobody in particular, without the network. Without what a debugger needs, it takes a fifth less time. What was built
# is kept in $kept/packages.
build_packages()
{
    local root=$work/build folder=/home/builder/zorvex-disk-manager sources
    sources=$(sources_of_packages)
    make_root build "$work/built" "$kept/build" "$kept/empty"
    mkdir "$root$folder"
    (cd "$project" && our_files '*' | tar -c -T -) | tar -x -C "$root$folder"
    in_root "$root" chown -R builder: "$folder"
    logged unshare --net -- env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/home/builder LC_ALL=C.UTF-8 \
        DEB_CXXFLAGS_APPEND="-Werror -g0" "DEB_BUILD_OPTIONS=noautodbgsym parallel=$(nproc) $1" \
        chroot --userspec=builder:builder "$root" env --chdir="$folder" dpkg-buildpackage -us -uc
    rm -rf "$kept/packages"
    mkdir "$kept/packages"
    cp "$work"/built/home/builder/zorvex-disk-manager*.* "$kept/packages"
    printf '%s\n' "$sources" >"$kept/packages/sources"
}
