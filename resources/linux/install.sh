#!/bin/sh
# Installs the vorle beside this script for who runs it, so that it can update itself:
#     ./install [FOLDER]        ~/.local/lib/vorle when not said
# docs/updates.md says what lies where.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
folder=${1:-"$HOME/.local/lib/vorle"}
version=$(cat "$here/version")

if [ -x "$folder/current/bin/vorle" ]; then
    echo "vorle est déjà installée dans $folder : elle se met à jour elle-même." >&2
    exit 1
fi
mkdir -p "$folder/versions"
folder=$(CDPATH='' cd -- "$folder" && pwd) # the link below leads there from elsewhere
rm -rf "$folder/versions/.new"
mkdir "$folder/versions/.new"
cp -R "$here/version" "$here/bin" "$here/share" "$folder/versions/.new/"
rm -rf "$folder/versions/$version"
mv "$folder/versions/.new" "$folder/versions/$version"
cp "$here/bin/vorle-launcher" "$folder/vorle"
sync # before anything leads there
ln -sfn "versions/$version" "$folder/current"

mkdir -p "$HOME/.local/bin"
ln -sf "$folder/vorle" "$HOME/.local/bin/vorle"
echo "vorle $version est installée dans $folder. Pour l’ouvrir : $HOME/.local/bin/vorle"
