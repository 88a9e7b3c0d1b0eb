# Completion of ellwynd-cli for bash.

_ellwynd_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local commands='score courses roster term student dashboard message contacted templates
    thresholds connect status disconnect defaults privacy'
  COMPREPLY=()

  # The command stands behind --sample and any number of "-Key value".
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
    # The value of a "-Key" is the teacher's own.
    ((i == COMP_CWORD)) || return
    mapfile -t COMPREPLY < <(compgen -W "$commands --sample --help --version" -- "$current")
    return
  fi

  case $previous in
    -o | --output)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -f -- "$current")
      return
      ;;
    --passing | --inactivity | --now | --template | --student) return ;;
  esac

  local options='--json --output --help'
  case $command in
    score) options+=' --passing --inactivity --now' ;;
    roster) options+=' --visit --csv --markdown' ;;
    term) options+=' --csv --markdown' ;;
    dashboard) options+=' --notify' ;;
    message) options+=' --template --student --note' ;;
    thresholds) options+=' --passing --inactivity --use-defaults' ;;
  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options -o -h" -- "$current")
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
