# Completion of ellwynd-cli for bash. Commands, options, preferences and templates are read from the
# program.

# Offers the lines of standard input that begin with the given text, with their special characters
# escaped. If the word on the command line is quoted, only lines that mean the same within quotes.
_ellwynd_cli_offer() {
  local typed=$1 quote='' line
  case $typed in
    [\"\']*) quote=${typed:0:1} typed=${typed:1} ;;
    *) typed=${typed//\\/} ;;
  esac
  while IFS= read -r line; do
    [[ -n $line && $line == "$typed"* ]] || continue
    if [[ -z $quote ]]; then
      # Bash completes only what follows the last ":" of a word.
      [[ $typed != *:* || $COMP_WORDBREAKS != *:* ]] || line=${line#"${typed%:*}:"}
      printf -v line %q "$line"
    elif [[ $line == *[\"\'\$\`\\!]* ]]; then
      continue
    fi
    COMPREPLY+=("$line")
  done
}

# The values of a preference that can be listed.
_ellwynd_cli_values() {
  "$program" defaults keys 2>/dev/null |
    sed -nE "s/^${1//./\\.}  .*  (YES or NO|one of .*)$/\1/p" |
    sed 's/^one of //; s/ or /, /' | tr -s ', ' '\n'
}

_ellwynd_cli() {
  local program=${COMP_WORDS[0]/#\~/$HOME}
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  COMPREPLY=()

  # "--option=value" is three words.
  if [[ $current == '=' ]]; then
    current=''
  elif [[ $previous == '=' ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi

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
  local keys='1d; s/^([^ {]+)  .*/\1/p'
  if [[ -z $command ]]; then
    if ((i > COMP_CWORD)); then
      _ellwynd_cli_offer "$current" < <(_ellwynd_cli_values "${previous#-}")
    elif [[ $current == -* ]]; then
      _ellwynd_cli_offer "$current" < <(
        printf '%s\n' --sample --help --version
        "$program" defaults keys 2>/dev/null | sed -nE "$keys" | sed 's/^/-/'
      )
    else
      _ellwynd_cli_offer "$current" < <(
        "$program" --help 2>/dev/null | sed -nE 's/^  ([a-z][a-z-]*) .*/\1/p'
      )
    fi
    return
  fi

  local help
  help=$("$program" "$command" --help 2>/dev/null)
  if [[ $previous == -o || $previous == --output ]]; then
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  elif [[ $previous == --template || $current == : || $previous == : ]]; then
    # All that was typed of the name, which bash splits at each ":".
    local typed=${COMP_LINE:0:COMP_POINT}
    typed=${typed##*--template[= ]}
    [[ $current != : ]] || current=''
    _ellwynd_cli_offer "${typed#"${typed%%[^ ]*}"}" < <("$program" templates --names 2>/dev/null)
  elif [[ $previous == --* ]] && grep -q "^  $previous <" <<<"$help"; then
    return
  elif [[ $current == -* ]]; then
    _ellwynd_cli_offer "$current" < <(
      sed -nE 's/^  (-[a-z]), (--[a-z-]+).*/\1\n\2/p; s/^  (--[a-z-]+).*/\1/p' <<<"$help"
    )
  elif [[ $command == score ]]; then
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
  else
    case $command:$((COMP_CWORD - at)):${COMP_WORDS[at + 1]} in
      defaults:1:*) _ellwynd_cli_offer "$current" < <(printf '%s\n' list keys read write delete) ;;
      privacy:1:*) _ellwynd_cli_offer "$current" < <(printf '%s\n' forget-history forget-contacts) ;;
      defaults:2:read | defaults:2:write | defaults:2:delete)
        _ellwynd_cli_offer "$current" < <("$program" defaults keys 2>/dev/null | sed -nE "$keys")
        ;;
      defaults:3:write) _ellwynd_cli_offer "$current" < <(_ellwynd_cli_values "$previous") ;;
    esac
  fi
}

complete -F _ellwynd_cli ellwynd-cli
