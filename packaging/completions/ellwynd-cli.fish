# Completion of ellwynd-cli for fish. Commands and options are read from the program's help.

# The command of the line, after --sample and any number of "-Key value".
function __ellwynd_cli_command
    set -l words (commandline -opc)
    set -l i 2
    while test $i -le (count $words)
        switch $words[$i]
            case '--*'
                set i (math $i + 1)
            case '-*'
                set i (math $i + 2)
            case '*'
                echo $words[$i]
                return 0
        end
    end
    # A "-Key" whose value is still missing.
    test $i -gt (math (count $words) + 1); and echo value
    return 1
end

function __ellwynd_cli_needs_command
    set -l command (__ellwynd_cli_command)
    test -z "$command"
end

function __ellwynd_cli_uses
    set -l command (__ellwynd_cli_command)
    contains -- "$command" $argv
end

function __ellwynd_cli_commands
    set -l words (commandline -opc)
    $words[1] --help 2>/dev/null | string replace -rf '^  ([a-z][a-z-]*) +(.*)' '$1\t$2'
end

function __ellwynd_cli_options
    set -l words (commandline -opc)
    set -l lines ($words[1] (__ellwynd_cli_command) --help 2>/dev/null)
    # Nothing to complete for the value of an option.
    string match -rq -- "^  $words[-1] <" $lines; and return
    string replace -rf '^  (--[a-z-]+)(?: <[^>]*>)? +(.*)' '$1\t$2' -- $lines
end

complete -c ellwynd-cli -f
complete -c ellwynd-cli -n __ellwynd_cli_needs_command -l sample -d 'Use the invented college'
complete -c ellwynd-cli -n __ellwynd_cli_needs_command -l version -d 'Show the version'
complete -c ellwynd-cli -s h -l help -d 'Show the help'
complete -c ellwynd-cli -n __ellwynd_cli_needs_command -a '(__ellwynd_cli_commands)'
complete -c ellwynd-cli -n 'not __ellwynd_cli_needs_command' -a '(__ellwynd_cli_options)'
complete -c ellwynd-cli -n 'not __ellwynd_cli_needs_command' -s o -l output -r -F -d 'Write to a file'
complete -c ellwynd-cli -n '__ellwynd_cli_uses score' -a '(__fish_complete_directories)'
complete -c ellwynd-cli -n '__ellwynd_cli_uses defaults' -a 'list read write delete'
complete -c ellwynd-cli -n '__ellwynd_cli_uses privacy' -a 'forget-history forget-contacts'
