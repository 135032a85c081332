# SPDX-License-Identifier: GPL-3.0-or-later
# Completion of sprig's command line for fish.

# The words before the cursor, the program's name and the options that may stand before a command left out.
function __sprig_words
    set -l words (commandline -opc)
    set -e words[1]
    while contains -- "$words[1]" -v --verbose
        set -e words[1]
    end
    string join \n -- $words
end

function __sprig_command
    set -l words (__sprig_words)
    test "$words[1]" = $argv[1]
end

# Whether so many operands stand between the command and the cursor.
function __sprig_operands
    set -l count -1
    set -l previous
    for word in (__sprig_words)
        if not string match -q -- '-*' $word; and test "$previous" != --in
            set count (math $count + 1)
        end
        set previous $word
    end
    test $count -eq $argv[1]
end

set -l first 'test (count (__sprig_words)) -eq 0'

complete -c sprig -n $first -a list -d 'Show what the menu holds'
complete -c sprig -n $first -a new -d 'Create a file without questions'
complete -c sprig -n $first -a detect -d 'Show the project types of a folder'
complete -c sprig -n $first -a config -d 'Find, write or check the configuration file'
complete -c sprig -n $first -a template -d 'Show and change the templates'
complete -c sprig -n $first -a undo -d 'Take the newest file back'
complete -c sprig -n $first -l version -d 'Show the version'
complete -c sprig -s v -l verbose -d 'Show log lines on standard error as well'
complete -c sprig -s h -l help -d 'Show help'

complete -c sprig -n '__sprig_command list' -f -l json -d 'The whole menu as JSON'
complete -c sprig -n '__sprig_command list' -f -l titles -d 'Only the titles of templates'
complete -c sprig -n '__sprig_command list; or __sprig_command detect' -f -a '(__fish_complete_directories)'

complete -c sprig -n '__sprig_command new' -f
complete -c sprig -n '__sprig_command new' -x -l in -d 'Where the file goes' -a '(__fish_complete_directories)'
complete -c sprig -n '__sprig_command new' -l dry-run -d 'Only print the path'
complete -c sprig -n '__sprig_command new; and __sprig_operands 0' -f -a '(sprig list --titles 2>/dev/null)'

complete -c sprig -n '__sprig_command config; and __sprig_operands 0' -f -a 'path init check'
complete -c sprig -n '__sprig_command config; and not __sprig_operands 0; and not __fish_seen_subcommand_from check' -f

set -l tasks list show export add import edit enable disable move remove
complete -c sprig -n '__sprig_command template; and __sprig_operands 0' -f -a "$tasks"
complete -c sprig -n '__sprig_command template; and not __sprig_operands 0; and not __fish_seen_subcommand_from add import' \
    -f -a '(sprig template list --titles 2>/dev/null)'
complete -c sprig -n '__sprig_command template; and __fish_seen_subcommand_from add' -x -l name -d 'What it is called'

complete -c sprig -n '__sprig_command undo' -f -l list -d 'Show what can be undone'
