#!/bin/sh
# Makes the throw-away Wine prefix that the Wine tests share, once per build folder.
prefix=$1
if ! command -v wine >/dev/null 2>&1; then
    echo "wine is not installed (scripts/setup installs wine64)" >&2
    exit 1
fi
if [ -f "$prefix/user.reg" ] && [ -f "$prefix/system.reg" ]; then
    exit 0
fi
rm -rf "$prefix"
WINEPREFIX=$prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=" wine wineboot -i >/dev/null 2>&1
WINEPREFIX=$prefix wineserver -w
if [ ! -f "$prefix/user.reg" ]; then
    echo "wineboot did not make $prefix" >&2
    exit 1
fi
