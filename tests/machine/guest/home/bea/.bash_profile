# SPDX-License-Identifier: MIT
[ "$(tty)" != /dev/tty1 ] || exec /usr/local/lib/machine/desktop
