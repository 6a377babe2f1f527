# Completion of varnik-cli for bash. The program itself says what may stand at the cursor.
_varnik_cli() {
  # As they stand on the line: with the quotes and backslashes that hold a name together.
  local words=("${COMP_WORDS[@]:1:COMP_CWORD}") word=${COMP_WORDS[COMP_CWORD]} found=() line kind=:none
  while IFS= read -r line; do
    case $line in
      :*) kind=$line ;;
      *) found+=("${line%%$'\t'*}") ;;
    esac
  done < <("${1/#\~\//$HOME/}" complete "${words[@]//[\\\"\']/}" 2>/dev/null)
  COMPREPLY=()
  case $kind in
    :file) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
    :folder) mapfile -t COMPREPLY < <(compgen -d -- "$word") ;;
  esac
  found+=("${COMPREPLY[@]}")
  if [[ ${#found[@]} -gt ${#COMPREPLY[@]} && $word != [\"\']* ]]; then
    # Not by compgen -W, which would run what a name may hold.
    COMPREPLY=()
    for line in "${found[@]}"; do COMPREPLY+=("$(printf '%q' "$line")"); done
  else
    # The shell quotes names of files itself, as the quote on the line wants it, and marks folders.
    compopt -o filenames 2>/dev/null
    COMPREPLY=("${found[@]}")
  fi
}

complete -F _varnik_cli varnik-cli
