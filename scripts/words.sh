# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# How the scripts talk: progress and problems on the standard error, so that the standard output stays free for results.

say() {
    printf 'torvo: %s\n' "$*" >&2
}

fail() {
    say "$*"
    exit 1
}
