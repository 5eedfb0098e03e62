#!/usr/bin/env bash
# Runs a command as root with overlays on /etc, /usr and /var, which are discarded afterwards. Exits with
# 77 where overlay mounts are not possible.
set -euo pipefail

if [ "${1:-}" != --inside ]; then
    [ "$(id -u)" -eq 0 ] && unshare --mount true 2>/dev/null || exit 77
    exec unshare --mount --propagation private "${BASH_SOURCE[0]}" --inside "$@"
fi
shift
changes=$(mktemp -d)
mount -t tmpfs changes "$changes"
for folder in etc usr var; do
    mkdir -p "$changes/$folder/upper" "$changes/$folder/work"
    mount -t overlay changes "/$folder" \
        -o "lowerdir=/$folder,upperdir=$changes/$folder/upper,workdir=$changes/$folder/work" || exit 77
done
status=0
"$@" || status=$?
umount -l "$changes"
rmdir "$changes"
exit "$status"
