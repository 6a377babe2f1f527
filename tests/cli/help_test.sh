#!/usr/bin/env bash
# That completion, manual page, README, guide and links say what is so: help_test.sh VARNIK-CLI
set -euo pipefail
cli=$(realpath "$1")
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/config VARNIK_HOME=$work/app LC_ALL=C
install=$HOME/games/bz2 # the guide's name for it
mkdir -p "$install" "$VARNIK_HOME" "$work/blocks"
cd "$install"
failures=0

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

# A new install of this version, with the files of a listing on standard input besides.
before() {
  rm -rf ./* "$XDG_CONFIG_HOME"
  mkdir addon
  touch bzone.exe data.pak binkw32.dll
  echo "// the game's own" >bzone.cfg
  printf '[Network]\r\nVersionStr=%s\r\n' "$1" >addon/localize.odf
  game=$(listing)
  while IFS= read -r line; do
    mkdir -p "$(dirname "${line%%: *}")"
    printf '%s\r\n' "${line#*: }" >"${line%%: *}"
  done
  "$cli" installs add "$install" >/dev/null
  "$cli" installs select 0 >/dev/null
}

# All files but definitions, each as its name and its first line.
listing() {
  find . -type f ! -name '*.bzm' -printf '%P\n' | sort | while read -r name; do
    echo "$name: $(head -n 1 "$name" | tr -d '\r')"
  done
}

# The listing of what is not as the game came; where $1 has `...`, any line will do.
after() {
  comm -13 <(echo "$game") <(listing) | sed -f <(sed -n 's|^\(.*: \)\.\.\.$|s\|^\1.*\|\1...\||p' "$1")
}

varnik-cli() { "$cli" "$@" 2>"$work/err" || cat "$work/err"; }

session() {
  grep '^\$ ' "$1" | while read -r line; do
    echo "$line"
    eval "${line#* }"
  done | sed "s|$HOME|~|g; s/ $//"
}

# The guide: each block between ``` marks is what its first line calls it.
awk -v folder="$work/blocks" '/^```/ { inside = !inside; file = sprintf("%s/%04d", folder, NR); sub("^```", "") }
  inside { print >file }' "$source_dir/docs/modders-guide.md"
for block in "$work"/blocks/*; do
  kind=$(head -n 1 "$block")
  sed -i 1d "$block"
  said=$(cat "$block")
  case $kind in
    'text before') before 1.2 <"$block" ;;
    'text before '*) before "${kind##* }" <"$block" ;;
    'text after') said=$(after "$block") ;;
    'text in '*) [[ $(tr -d '\r' <"${kind##* }") == *"$said"* ]] || said="not in ${kind##* }" ;;
    console) said=$(session "$block") ;;
    'bzm '* | 'ini '*) sed 's/$/\r/' "$block" >"${kind#* }" ;;
    *) said="no such block: $kind" ;;
  esac
  diff -u "$block" - <<<"$said" >&2 || fail "so it goes on line ${block##*/} of the guide"
done

# What README shows, typed into a clone that has been built.
mkdir -p "$work/clone/build/release"
ln -s "$source_dir/tools" "$source_dir/data" "$work/clone"
ln -s "$(dirname "$cli")" "$work/clone/build/release/bin"
awk '/^```/ { inside = !inside; next } inside' "$source_dir/README.md" >"$work/shown"
(cd "$work/clone" && session "$work/shown") | diff -u "$work/shown" - >&2 || fail "README shows another run"

for document in "$source_dir"/README.md "$source_dir"/docs/*.md; do
  for link in $(grep -oP '\]\(\K[^):#]+(?=[^):]*\))' "$document"); do
    [ -e "$(dirname "$document")/$link" ] || fail "$document links to $link"
  done
done

# The demo's mods use every directive of both formats.
for mod in "$HOME"/varnik-demo/games/*/*.bzm; do
  folder=$(dirname "$mod")
  on() { "$cli" --root "$folder" --app-path "$HOME/varnik-demo/app" "$1" "$mod" >"$work/said" 2>&1; }
  on check || fail "a finding in $mod"
  on deactivate || true
  rm -rf "$work/copy"
  cp -a "$folder" "$work/copy"
  on activate || grep -q 'does not fit' "$work/said" || fail "$mod cannot be activated"
  on deactivate || fail "$mod cannot be deactivated"
  # A race's name comes back with a further line end.
  diff -r "$work/copy" "$folder" >"$work/said" || [[ $mod == */league.bzm ]] || fail "$(cat "$work/said")"
done

# What each shell offers for a line, sorted, and quoted as bash does it.
in_bash() {
  # shellcheck source=/dev/null
  source "$source_dir/completion/varnik-cli.bash"
  read -ra COMP_WORDS <<<"varnik-cli $1"
  [[ $1 == *' ' || ! $1 ]] && COMP_WORDS+=('')
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  _varnik_cli "$cli"
  [ ${#COMPREPLY[@]} = 0 ] || printf '%s\n' "${COMPREPLY[@]}"
}
in_zsh() {
  # shellcheck disable=SC2016
  zsh -fc 'fpath=($1); autoload -U _varnik-cli; words=($2 "${(@s: :)3}"); CURRENT=$#words; PREFIX=$words[-1]
    _files() { }; compadd() { print -rl -- "${(@)names}" }; _varnik-cli' - "$source_dir/completion" "$cli" "$1" | quote
}
in_fish() {
  fish --no-config -c "source '$source_dir/completion/varnik-cli.fish'; complete -C 'varnik-cli $1'" | cut -f 1 | quote
}
quote() { while IFS= read -r word; do printf '%q\n' "$word"; done; }

before 1.2 </dev/null
printf 'BZ2HALD5\r\ndname(Ice);\r\n' | tee ice.bzm >"snow \$(touch ran).bzm"
printf 'BZ2HALD5\r\nversion(9);\r\n' >inapt.bzm
printf 'BZ2HALD5\r\nactivated();\r\nactivatedfile(x);\r\n' >stay.bzm
printf 'addon\\%s,addon\\\r\n' duel.bzn dune.bzn isle.trn >varnik.lst
mkdir "$work/here"
cd "$work/here"
PATH=$(dirname "$cli"):$PATH
for shell in bash zsh fish; do
  command -v $shell >/dev/null || { echo "no $shell here: its completion was not tried" >&2; continue; }
  while IFS='|' read -r words expected; do
    offered=$("in_$shell" "$words" | sort | paste -sd ' ') || true # nothing to offer is a failure to a shell
    [ "$offered" = "$expected" ] || fail "$shell completes \`$words\` by \`$offered\`, not \`$expected\`"
  done < <(sed "s|@|$install|" "$source_dir/tests/cli/completions.txt")
done
[ -e ran ] && fail "completing a file name ran it"

page=$(sed -E 's/\\-/-/g; s/\bF[lL] Fl /--/g' "$source_dir/man/varnik-cli.1")
part() {
  awk -v part="$1:" '/^[^ ]/ { inside = $0 == part; next } inside && /^  [^ ]/ { sub(/^  (-h,)?/, ""); print $1 }'
}
check_page() {
  local help option command
  help=$("$cli" "$@" --help)
  for option in $(part Options <<<"$help"); do
    grep -qE -- "$option\b" <<<"$page" || fail "the manual page lacks $* $option"
  done
  for command in $(part Subcommands <<<"$help"); do
    grep -qE "^\.It Ic ${*:+$* }$command( |$)" <<<"$page" || fail "the manual page lacks $* $command"
    check_page "$@" "$command"
  done
}
check_page
exit $((failures > 0))
