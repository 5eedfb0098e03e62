# Completion for kov and kovalo-host, from their --help output. -*- shell-script -*-

_kovalo()
{
    local program=$1 word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} words
    if [ "$COMP_CWORD" -eq 1 ]; then
        words=$("$program" --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z]\+\).*/\1/p')
        words+=' --help --version'
    elif [[ $word == -* ]]; then
        words=$("$program" "$command" --help 2>/dev/null | grep -oE -e '--[a-z]+' | sort -u)
    elif [[ ${COMP_WORDS[COMP_CWORD - 1]} == --flatpak ]]; then
        words=$("$program" browsers | awk -F '  +' '$3 == "Flatpak" { print $2 }')
    elif [[ ${COMP_WORDS[COMP_CWORD - 1]} == @(--host|--root) ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
    elif [ "${program##*/}" = kovalo-host ] && [ "$command" != browsers ]; then
        words=$("$program" browsers | awk -F '  +' 'NR > 1 { print $2 }')
    elif [ "${program##*/}" = kov ] && [[ $command == @(open|folder|pause|resume|retry|remove) ]]; then
        words=$("$program" jobs 2>/dev/null </dev/null | cut -f 1)
    elif [ "${program##*/}" = kov ] && [[ $command == @(get|set) ]] && [ "$COMP_CWORD" -eq 2 ]; then
        words=$("$program" list 2>/dev/null | cut -d = -f 1)
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
} && complete -F _kovalo kov kovalo-host
