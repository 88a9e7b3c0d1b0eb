# Completion of ellwynd-cli for fish. Commands, options, preferences and templates are read from the
# program.

# The command of the line, after --sample and any number of "-Key value", and the words after it. Fails
# without a command.
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
                printf '%s\n' $words[$i..-1]
                return 0
        end
    end
    # A "-Key" whose value is still missing.
    test $i -gt (math (count $words) + 1); and printf '%s\n' -value $words[-1]
    return 1
end

function __ellwynd_cli_needs_command
    set -l words (__ellwynd_cli_command)
    test -z "$words"
end

function __ellwynd_cli_uses
    set -l words (__ellwynd_cli_command)
    contains -- "$words[1]" $argv
end

function __ellwynd_cli_begins_with_dash
    string match -q -- '-*' (commandline -ct)
end

# Whether the words from the command on are these; "*" stands for any word.
function __ellwynd_cli_follows
    set -l words (__ellwynd_cli_command)
    test (count $words) -eq (count $argv); or return
    for i in (seq (count $argv))
        contains -- $argv[$i] '*' $words[$i]; or return
    end
end

function __ellwynd_cli_commands
    set -l words (commandline -opc)
    $words[1] --help 2>/dev/null | string replace -rf '^  ([a-z][a-z-]*) +(.*)' '$1\t$2'
end

# The preferences with their meanings, after a prefix.
function __ellwynd_cli_keys
    set -l words (commandline -opc)
    $words[1] defaults keys 2>/dev/null | tail -n +2 |
        string replace -rf -- '^([^ {]+)  .*  (\S+(?: \S+)*)  +\S+(?: \S+)*$' "$argv[1]\$1\t\$2"
end

# The values of a preference that can be listed.
function __ellwynd_cli_values
    set -l words (commandline -opc)
    set -l key (string escape --style=regex -- (string trim -lc - -- $words[-1]))
    $words[1] defaults keys 2>/dev/null |
        string replace -rf "^$key  .*  (YES or NO|one of .*)\$" '$1' |
        string replace -r '^one of ' '' | string split ', ' | string split ' or '
end

function __ellwynd_cli_templates
    set -l words (commandline -opc)
    $words[1] templates --names 2>/dev/null
end

function __ellwynd_cli_options
    set -l words (commandline -opc)
    set -l command (__ellwynd_cli_command)
    set -l lines ($words[1] $command[1] --help 2>/dev/null)
    # Nothing to complete for the value of an option.
    string match -rq -- "^  $words[-1] <" $lines; and return
    string replace -rf '^  (--[a-z-]+)(?: <[^>]*>)? +(.*)' '$1\t$2' -- $lines
end

complete -c ellwynd-cli -f
complete -c ellwynd-cli -n __ellwynd_cli_needs_command -l sample -d 'Use the invented college'
complete -c ellwynd-cli -n __ellwynd_cli_needs_command -l version -d 'Show the version'
complete -c ellwynd-cli -s h -l help -d 'Show the help'
complete -c ellwynd-cli -n __ellwynd_cli_needs_command -a '(__ellwynd_cli_commands)'
complete -c ellwynd-cli -n '__ellwynd_cli_needs_command; and __ellwynd_cli_begins_with_dash' \
    -a '(__ellwynd_cli_keys -)'
complete -c ellwynd-cli -n '__ellwynd_cli_uses -value' -a '(__ellwynd_cli_values)'
complete -c ellwynd-cli -n 'not __ellwynd_cli_needs_command; and __ellwynd_cli_begins_with_dash' \
    -a '(__ellwynd_cli_options)'
complete -c ellwynd-cli -n 'not __ellwynd_cli_needs_command' -s o -l output -r -F -d 'Write to a file'
complete -c ellwynd-cli -n '__ellwynd_cli_uses message' -l template -x -a '(__ellwynd_cli_templates)'
complete -c ellwynd-cli -n '__ellwynd_cli_uses score' -a '(__fish_complete_directories)'
complete -c ellwynd-cli -n '__ellwynd_cli_follows defaults' -a 'list keys read write delete'
for verb in read write delete
    complete -c ellwynd-cli -n "__ellwynd_cli_follows defaults $verb" -a '(__ellwynd_cli_keys "")'
end
complete -c ellwynd-cli -n '__ellwynd_cli_follows defaults write "*"' -a '(__ellwynd_cli_values)'
complete -c ellwynd-cli -n '__ellwynd_cli_follows privacy' -a 'forget-history forget-contacts'
