# Completion of ellwynd-cli for fish.

# The command of the line, behind --sample and any number of "-Key value".
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
    # A "-Key" that still waits for its value.
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

complete -c ellwynd-cli -f
complete -c ellwynd-cli -n __ellwynd_cli_needs_command -l sample -d 'Work on the invented college'
complete -c ellwynd-cli -n __ellwynd_cli_needs_command -l version -d 'Show the version'
complete -c ellwynd-cli -s h -l help -d 'Show the help'

for command in \
    'score/Score Canvas JSON saved in a folder' \
    'courses/List your active courses' \
    'roster/Fetch and score one course' \
    'term/The flagged students of a whole term' \
    'student/One student with movement and contacts' \
    'dashboard/Run one scoring pass' \
    'message/Fill a message template' \
    'contacted/Mark students as contacted' \
    'templates/List the message templates' \
    'thresholds/Show, set or release thresholds' \
    'connect/Save a Canvas address with its token' \
    'status/Whether the program is connected' \
    'disconnect/Sign out of Canvas' \
    'defaults/Show or change the preferences' \
    'privacy/Show or delete what is remembered'
    set -l parts (string split / $command)
    complete -c ellwynd-cli -n __ellwynd_cli_needs_command -a $parts[1] -d $parts[2]
end

complete -c ellwynd-cli -n 'not __ellwynd_cli_needs_command' -l json -d 'Print one JSON document'
complete -c ellwynd-cli -n 'not __ellwynd_cli_needs_command' -s o -l output -r -F -d 'Write to a file'
complete -c ellwynd-cli -n '__ellwynd_cli_uses score' -a '(__fish_complete_directories)'
complete -c ellwynd-cli -n '__ellwynd_cli_uses score' -l now -x -d 'Score as of an instant'
complete -c ellwynd-cli -n '__ellwynd_cli_uses score thresholds' -l passing -x -d 'Passing score, percent'
complete -c ellwynd-cli -n '__ellwynd_cli_uses score thresholds' -l inactivity -x -d 'Days behind the class'
complete -c ellwynd-cli -n '__ellwynd_cli_uses thresholds' -l use-defaults -d 'Follow the defaults again'
complete -c ellwynd-cli -n '__ellwynd_cli_uses roster' -l visit -d 'Record it as your visit'
complete -c ellwynd-cli -n '__ellwynd_cli_uses roster term' -l csv -d 'Print the export as CSV'
complete -c ellwynd-cli -n '__ellwynd_cli_uses roster term' -l markdown -d 'Print the export as Markdown'
complete -c ellwynd-cli -n '__ellwynd_cli_uses dashboard' -l notify -d 'Post the movement notice'
complete -c ellwynd-cli -n '__ellwynd_cli_uses message' -l template -x -d 'The template by name'
complete -c ellwynd-cli -n '__ellwynd_cli_uses message' -l student -x -d 'One student only'
complete -c ellwynd-cli -n '__ellwynd_cli_uses message' -l note -d 'Note a contact for each'
complete -c ellwynd-cli -n '__ellwynd_cli_uses defaults' -a 'list read write delete'
complete -c ellwynd-cli -n '__ellwynd_cli_uses privacy' -a 'forget-history forget-contacts'
