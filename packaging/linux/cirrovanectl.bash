# Completion of cirrovanectl for bash.

# The commands below the one that was typed, which is "" at first.
_cirrovanectl_commands() {
  case $1 in
    "") echo "check watch leave pending metrics coverage explain refresh watchlist history incidents diagnose status export tools version" ;;
    coverage) echo "acknowledge forget acknowledged" ;;
    watchlist) echo "list add remove" ;;
    incidents) echo "resolve reopen" ;;
    tools) echo "install" ;;
  esac
}

# The options of the program, of a command, and of a command below it.
_cirrovanectl_options() {
  local options="-h --help --mac-root"
  [ -z "$1" ] || [ "$1" = metrics ] || options+=" --json"
  case "$1 $2" in
    "check ") options+=" --wait --timeout --interval --strict" ;;
    "coverage acknowledge") options+=" --days" ;;
    "watch ") options+=" --timeout" ;;
    "leave ") options+=" --timeout --then" ;;
    "pending ") options+=" --sort --limit" ;;
    "metrics ") options+=" --textfile" ;;
    "history ") options+=" --limit" ;;
    "export ") options+=" --html --redact --from" ;;
    "incidents ") options+=" --scope --severity" ;;
  esac
  echo "$options"
}

# What may stand for the value of an option, or of an argument; nothing where only the user knows.
_cirrovanectl_values() {
  case $1 in
    --scope) echo "all active resolved" ;;
    --severity) echo "all warning error" ;;
    --sort) echo "size age name" ;;
    --then) echo "nothing sleep shutdown" ;;
    --redact) echo "names strict" ;;
    diagnose) echo "icloud finder network storage power performance system" ;;
  esac
}

_cirrovanectl() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command="" subcommand="" argument="" word index
  for ((index = 1; index < COMP_CWORD; index++)); do
    word=${COMP_WORDS[index]}
    case $word in
      --mac-root | --timeout | --interval | --limit | --scope | --severity | --sort | --then | --days | --textfile | --html | --redact | --from) index=$((index + 1)) ;;
      -*) ;;
      *)
        if [ -z "$command" ]; then
          command=$word
        elif [ -z "$subcommand$argument" ] && [[ " $(_cirrovanectl_commands "$command") " == *" $word "* ]]; then
          subcommand=$word
        else
          argument=$word
        fi
        ;;
    esac
  done

  local words="" files=""
  case $previous in
    --mac-root) files=-d ;;
    --textfile | --html | --from) files=-f ;;
    --scope | --severity | --sort | --then | --redact) words=$(_cirrovanectl_values "$previous") ;;
    --timeout | --interval | --limit | --days) ;;
    *)
      if [[ $current == -* ]]; then
        words=$(_cirrovanectl_options "$command" "$subcommand")
      elif [ -z "$subcommand$argument" ]; then
        words="$(_cirrovanectl_commands "$command") $(_cirrovanectl_values "$command")"
      fi
      case "$command $subcommand" in
        "check " | "watch " | "pending " | "watchlist add" | "watchlist remove") files=-d ;;
        # A verb is meant more often than a folder.
        "coverage ") [ -z "$current$argument" ] || files=-d ;;
        "coverage acknowledge" | "coverage forget") files=-f ;;
        "export ") [ -n "$argument" ] || files=-f ;;
      esac
      ;;
  esac

  COMPREPLY=()
  local found
  while IFS= read -r found; do
    [ -z "$found" ] || COMPREPLY+=("$found")
  done < <(compgen -W "$words" -- "$current")
  if [ -n "$files" ] && [[ $current != -* ]]; then
    # Without this, a name with a space in it would be taken for two.
    compopt -o filenames 2>/dev/null
    while IFS= read -r found; do
      COMPREPLY+=("$found")
    done < <(compgen "$files" -- "$current")
  fi
}

complete -F _cirrovanectl cirrovanectl
