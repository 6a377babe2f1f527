# Completion of varnik-cli for bash. Commands, options and the kinds of their values are read from what the program's
# own --help says, names of mods and settings from what it lists.

# The lines of one part of a help text, as `name rest`, without the indent.
_varnik_cli_part() {
  awk -v part="$1:" '/^[^ ]/ { inside = $0 == part; next } inside && /^  [^ ]/ { sub(/^  (-h,)?/, ""); print }'
}

# _varnik_cli_column NEXT COMMAND: the first column of the command's table, which ends where the column NEXT begins.
_varnik_cli_column() {
  "${program[@]}" "$2" 2>/dev/null | awk -v second="$1" '
    NR == 1 { end = index($0, second) - 1; next }
    { word = substr($0, 1, end); sub(/ +$/, "", word); print word }'
}

_varnik_cli_values() {
  case $1 in
    MOD) _varnik_cli_column Name mods ;;
    KEY:{*}) tr , '\n' <<<"${1:5:-1}" ;;
    KEY) "${program[@]}" settings 2>/dev/null | awk 'NR > 1 { print $2 }' ;;
    VALUE) printf '%s\n' On Off ;;
    N) "${program[@]}" installs 2>/dev/null | awk 'NR > 1 && $1 ~ /^[0-9]+$/ { print $1 }' ;;
  esac
}

_varnik_cli() {
  local word=${COMP_WORDS[COMP_CWORD]} program=("$1") command=() given=0 i help kind='' candidate
  help=$("$1" --help 2>/dev/null) || return
  for ((i = 1; i < COMP_CWORD; i++)); do
    local earlier=${COMP_WORDS[i]/#\~\//$HOME/} option=
    if [[ $earlier == --* ]]; then
      option=$({ printf '%s\n' "$help"; "$1" --help; } | _varnik_cli_part Options | awk -v name="$earlier" \
        '$1 == name && $2 ~ /^[A-Z]+(:|$)/ { print $2; exit }')
      [[ $option ]] || continue
      ((++i < COMP_CWORD)) || kind=$option
      [[ $earlier == --root || $earlier == --app-path ]] && program+=("$earlier" "${COMP_WORDS[i]/#\~\//$HOME/}")
    elif _varnik_cli_part Subcommands <<<"$help" | grep -q "^$earlier "; then
      command+=("$earlier")
      help=$("$1" "${command[@]}" --help 2>/dev/null)
    else
      ((++given))
    fi
  done
  [[ $kind ]] || kind=$(_varnik_cli_part Positionals <<<"$help" | awk -v row=$((given + 1)) 'NR == row { print $1 }')

  COMPREPLY=()
  case $kind in
    DIR) compopt -o dirnames 2>/dev/null ;;  # where nothing else is found below
    FILE | MOD) compopt -o default 2>/dev/null ;;
  esac
  # Not by compgen -W, which would run what a name may hold.
  while IFS= read -r candidate; do
    [[ ${candidate,,} == "${word,,}"* && $candidate ]] && COMPREPLY+=("$(printf '%q' "$candidate")")
  done < <(
    if [[ $word == -* ]]; then
      { printf '%s\n' "$help"; "$1" --help; } | _varnik_cli_part Options | awk '!seen[$1]++ { print $1 }'
    elif [[ $kind ]]; then
      _varnik_cli_values "$kind"
    elif ((given == 0)); then
      _varnik_cli_part Subcommands <<<"$help" | awk '{ print $1 }'
    fi
  )
}

complete -F _varnik_cli varnik-cli
