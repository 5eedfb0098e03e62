#!/usr/bin/env bash
# Prints the manual page of a program, generated from its --help output.
#
#   manpage.sh PROGRAM VERSION YYYY-MM-DD PAGE
#
# The first line of PAGE is the section NAME; the rest of it comes last.
set -euo pipefail
export LC_ALL=C.UTF-8
program=$1 version=$2 date=$3 page=$4
name=$(basename "$program")

escape() { sed -e 's/\\/\\e/g' -e 's/-/\\-/g' -e "s/^\([.']\)/\\\\\&\1/"; }
literally() {
    echo '.nf'
    escape
    echo '.fi'
}

overview=$("$program" --help)
printf '.TH %s 1 "%s" "Kovalo %s" "User Commands"\n.SH NAME\n' "${name^^}" "$date" "$version"
head -n 1 "$page" | escape
echo '.SH SYNOPSIS'
sed -n '1s/^Usage: *//p' <<<"$overview" | literally
echo '.SH DESCRIPTION'
tail -n +2 <<<"$overview" | sed '/./,$!d' | literally
echo '.SH COMMANDS'
# The list of commands ends with an empty line.
sed -n '/^Commands:/,/^$/s/^  \([a-z]\+\).*/\1/p' <<<"$overview" | while read -r command; do
    echo ".SS $command"
    "$program" "$command" --help </dev/null | literally
done
tail -n +2 "$page"
