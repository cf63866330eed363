#compdef cirrovanectl
# Completion of cirrovanectl for zsh.

_cirrovanectl() {
  local context state state_descr line
  typeset -A opt_args
  local -a everywhere=(
    '(- *)'{-h,--help}'[print a summary and end]'
    '--mac-root[folder that stands for the disk of a Mac]:folder:_files -/'
  )
  local -a json=('--json[print one JSON document instead of text]')

  _arguments -C $everywhere '1:command:->command' '*::argument:->argument'
  case $state in
    command)
      local -a commands=(
        'check:scan folders and say whether it is safe to close'
        'watch:say whether it is safe to close, now and at every change'
        'leave:wait until it is safe to close, then sleep or shut down'
        'pending:show what is left to upload'
        'metrics:print the state of this machine for Prometheus'
        'coverage:say what the verdict does not vouch for'
        'explain:say why the verdict is what it is'
        'refresh:scan, judge the machine, and record both'
        'watchlist:show and change the watched folders'
        'history:show the recorded scans'
        'incidents:show recurring problems'
        'diagnose:judge the machine and its connection to iCloud'
        'status:measure the machine'
        'export:write everything known into a proof packet'
        'tools:show and install optional tools'
        'version:show which build this is'
      )
      _describe command commands
      ;;
    argument)
      case $line[1] in
        check)
          _arguments $everywhere $json '--wait[wait until it is safe]' \
            '--timeout[give up after so many seconds]:seconds:' '--interval[scan everything again so often]:seconds:' \
            '--strict[safe only if nothing is left out]' '*:folder:_files -/'
          ;;
        watch)
          _arguments $everywhere $json '--timeout[end after so many seconds]:seconds:' '*:folder:_files -/'
          ;;
        leave)
          _arguments $everywhere $json '--timeout[give up after so many seconds]:seconds:' \
            '--then[what to do once it is safe]:act:(nothing sleep shutdown)'
          ;;
        pending)
          _arguments $everywhere $json '--sort[which first]:order:(size age name)' \
            '--limit[show at most so many files]:number:' '*:folder:_files -/'
          ;;
        metrics)
          _arguments $everywhere '--textfile[write them to a file]:file:_files'
          ;;
        coverage)
          _arguments $everywhere $json '--days[acknowledge for so many days]:days:' \
            '1:command:(acknowledge forget acknowledged)' '*:path:_files'
          ;;
        watchlist)
          _arguments $everywhere $json '1:command:(list add remove)' '*:folder:_files -/'
          ;;
        history)
          _arguments $everywhere $json '--limit[show at most so many scans]:number:'
          ;;
        incidents)
          _arguments $everywhere $json '--scope[which]:scope:(all active resolved)' \
            '--severity[how serious]:severity:(all warning error)' '1:command:(resolve reopen)' '2:identifier:'
          ;;
        diagnose)
          _arguments $everywhere $json '1:domain:(icloud finder network storage power performance system)'
          ;;
        export)
          _arguments $everywhere $json '--html[write a page for a person]:file:_files' \
            '--redact[hide names]:how:(names strict)' '--from[take this packet]:packet:_files' '1:file:_files'
          ;;
        tools)
          _arguments $everywhere $json '1:command:(install)' '2:tool:'
          ;;
        *)
          _arguments $everywhere $json
          ;;
      esac
      ;;
  esac
}

_cirrovanectl "$@"
