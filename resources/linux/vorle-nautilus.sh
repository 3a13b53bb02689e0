#!/bin/sh
# Hands the chosen files to vorle: each is a file with a link in it (.desktop, .url, .webloc).
missed=0

add() {
    @SHELL@ ajouter --deposer -- "$1" || missed=$((missed + 1))
}

if [ "$#" -gt 0 ]; then
    for name in "$@"; do
        # A name alone, in the folder this was called from: never a word of the command's own.
        case $name in
        /*) add "$name" ;;
        *) add "$PWD/$name" ;;
        esac
    done
else
    # Places that are no folder of this machine: addresses, one a line, encoded.
    set -f
    IFS='
'
    for address in $NAUTILUS_SCRIPT_SELECTED_URIS; do
        add "$address"
    done
fi

if [ "$missed" -gt 0 ] && command -v notify-send >/dev/null 2>&1; then
    notify-send -- 'vorle' "Sans lien que je puisse ajouter : $missed"
fi
exit 0
