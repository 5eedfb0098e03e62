#!/usr/bin/env bash
# Packages a release build: Debian packages, a relocatable archive, and the extension for the stores.
# Reproducible: the same build gives the same bytes.
#
#   pack.sh BUILD_FOLDER OUTPUT_FOLDER
set -euo pipefail
umask 022
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(cd "$1" && pwd)
rm -rf "$2"
mkdir -p "$2"
output=$(cd "$2" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
SOURCE_DATE_EPOCH=$(date --date "$(sed -n '/^ -- /{s/.*>  //p;q}' "$here/debian/changelog")" +%s)
export SOURCE_DATE_EPOCH TZ=UTC LC_ALL=C.UTF-8

quietly() { "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2 && exit 1; }; }

quietly cpack --config "$build/CPackConfig.cmake" -B "$work/cpack"
mv "$work"/cpack/*.deb "$output"

version=$(dpkg-deb -f "$output"/kovalo_*.deb Version)
archive=kovalo-$version-$(dpkg --print-architecture)
quietly cmake --install "$build" --component archive --strip --prefix "$work/$archive"
tar -C "$work" --owner=0 --group=0 --numeric-owner --sort=name --mtime="@$SOURCE_DATE_EPOCH" \
    -cf - "$archive" | gzip -9n >"$output/$archive.tar.gz"

extension=$work/$archive/extension
find "$extension" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
(cd "$extension" && find . -type f -printf '%P\n' | sort) >"$work/files"
version=$(sed -nE 's/.*"version": "([0-9.]+)".*/\1/p' "$extension/manifest.json")
(cd "$extension" && cmake -E tar cf "$output/kovalo-browser-extension-$version.zip" --format=zip \
    --files-from="$work/files")

ls -l "$output"
