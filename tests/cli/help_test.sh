#!/usr/bin/env bash
# What the completion offers, and that the manual page describes every command and option: help_test.sh VARNIK-CLI
set -euo pipefail
cli=$(realpath "$1")
source_dir=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/config VARNIK_HOME=$work/app
failures=0

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

install=$work/install
mkdir -p "$install" "$VARNIK_HOME"
touch "$install/bzone.exe" "$install/data.pak" "$install/binkw32.dll"
printf 'BZ2HALD5\r\ndname(Ice);\r\n' | tee "$install/ice.bzm" >"$install/snow \$(touch $$).bzm"
cd "$work"
"$cli" installs add "$install" >/dev/null
"$cli" installs select 0 >/dev/null

# shellcheck source=/dev/null
source "$source_dir/completion/varnik-cli.bash"
while IFS='|' read -r words expected; do
  read -ra COMP_WORDS <<<"varnik-cli $words"
  [[ $words == *' ' || ! $words ]] && COMP_WORDS+=('')
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  _varnik_cli "$cli" || true
  [ "${COMPREPLY[*]}" = "$expected" ] || fail "\`$words\` is completed by \`${COMPREPLY[*]}\`, not \`$expected\`"
done <<TABLE
se|settings
installs re|remove
installs select |0
settings set Rename|RenameLog
settings set RenameLog |On Off
maps --page SMap1.3|SMap1.3
maps --pag|--page
run ice.bzm --map |
run ice.bzm --e|--edit
--root $install run IC|ice.bzm
run sn|snow\\ \\\$\\(touch\\ $$\\).bzm
--json bogus |
TABLE
[ -e "$work/$$" ] && fail "completing a file name ran it"

page=$(sed -E 's/\\-/-/g; s/\bF[lL] Fl /--/g' "$source_dir/man/varnik-cli.1")
check_page() {
  local help option command
  help=$("$cli" "$@" --help)
  for option in $(_varnik_cli_part Options <<<"$help" | awk '{ print $1 }'); do
    grep -qE -- "$option\b" <<<"$page" || fail "the manual page lacks $* $option"
  done
  for command in $(_varnik_cli_part Subcommands <<<"$help" | awk '{ print $1 }'); do
    grep -qE "^\.It Ic ${*:+$* }$command( |$)" <<<"$page" || fail "the manual page lacks $* $command"
    check_page "$@" "$command"
  done
}
check_page
exit $((failures > 0))
