# Completion of ellwynd-cli for bash. Commands and options are read from the program's help.

_ellwynd_cli() {
  local program=${COMP_WORDS[0]}
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()

  # The command comes after --sample and any number of "-Key value".
  local i=1 command='' at=0
  while ((i < COMP_CWORD)); do
    case ${COMP_WORDS[i]} in
      --*) ((i += 1)) ;;
      -?*) ((i += 2)) ;;
      *)
        command=${COMP_WORDS[i]} at=$i
        break
        ;;
    esac
  done
  if [[ -z $command ]]; then
    # Nothing to complete for the value of a "-Key".
    ((i == COMP_CWORD)) || return
    local commands
    commands=$("$program" --help 2>/dev/null | sed -n 's/^  \([a-z][a-z-]*\) .*/\1/p')
    mapfile -t COMPREPLY < <(compgen -W "$commands --sample --help --version" -- "$current")
    return
  fi

  local help
  help=$("$program" "$command" --help 2>/dev/null)
  if [[ $previous == -o || $previous == --output ]]; then
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  elif [[ $previous == --* ]] && grep -q "^  $previous <" <<<"$help"; then
    return
  elif [[ $current == -* ]]; then
    local options
    options=$(sed -nE 's/^  (-[a-z]), (--[a-z-]+).*/\1 \2/p; s/^  (--[a-z-]+).*/\1/p' <<<"$help")
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
  elif [[ $command == score ]]; then
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
  elif ((COMP_CWORD == at + 1)); then
    case $command in
      defaults) mapfile -t COMPREPLY < <(compgen -W 'list read write delete' -- "$current") ;;
      privacy)
        mapfile -t COMPREPLY < <(compgen -W 'forget-history forget-contacts' -- "$current")
        ;;
    esac
  fi
}

complete -F _ellwynd_cli ellwynd-cli
