#!/usr/bin/env bash
# Packs a release build: a .tar.gz that a user unpacks and registers, and a .deb for everybody.
#
#   pack.sh BUILD_FOLDER OUTPUT_FOLDER
set -euo pipefail

build=$(cd "$1" && pwd)
mkdir -p "$2"
output=$(cd "$2" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The host itself tells its version.
task='{"id":"1","type":"handshake","handshake":{}}'
version=$(printf '%s %s' "${#task}" "$task" |
    HOME=$work XDG_RUNTIME_DIR=$work TMPDIR=$work KOVALO_LOG_LEVEL=0 \
        "$build/bin/wenativehost" --buggybrowser | sed -nE 's/.*"version":"([0-9.]+)".*/\1/p')
architecture=$(dpkg --print-architecture)
name=kovalo-native-host-$version-$architecture

# install_host FOLDER: the host, and the translations that it looks for beside itself.
install_host() {
    install -D -s -m 755 "$build/bin/wenativehost" "$1/wenativehost"
    (cd "$build/bin" && find translations -name '*.qm' -exec install -D -m 644 {} "$1/{}" \;)
}

tree=$work/$name
install_host "$tree/bin"
install -s -m 755 "$build/bin/kovalo-host" "$tree/bin"
tar -C "$work" --owner=0 --group=0 -czf "$output/$name.tar.gz" "$name"

package=$work/deb
install_host "$package/usr/lib/kovalo"
"$build/bin/kovalo-host" register --everybody --root "$package" --host /usr/lib/kovalo/wenativehost
mkdir "$package/DEBIAN"
find "$package/etc" -type f -printf '/etc/%P\n' >"$package/DEBIAN/conffiles"
cat >"$package/DEBIAN/control" <<EOF
Package: kovalo-native-host
Version: $version
Architecture: $architecture
Maintainer: Tessmark <support@tessmark.com>
Section: net
Priority: optional
Installed-Size: $(du -sk "$package/usr" | cut -f 1)
Depends: libc6, libstdc++6, libqt6core6 (>= 6.4), libqt6network6 (>= 6.4), libqt6sql6-sqlite (>= 6.4)
Description: Native messaging host of the Kovalo download manager
 Lets the Kovalo extension of Chromium, Chrome and Firefox hand downloads
 over to the Kovalo download manager.
EOF
dpkg-deb --root-owner-group -Zgzip --build "$package" "$output/$name.deb" >/dev/null

ls -l "$output/$name".*
