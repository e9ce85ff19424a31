# Completes the command lines of quarry in fish: commands, options, their choices, files, and paths
# of items in the document that is named.

# Whether the command is one of those named; without any, whether there is none yet.
function __quarry_uses
    set --local words (commandline --tokenize --current-process --cut-at-cursor)
    if test (count $argv) -eq 0
        test (count $words) -lt 2
    else
        set --query words[2]; and contains -- $words[2] $argv
    end
end

# Prints the folders in which documents are looked for, or what else stands behind the command and
# is no option.
function __quarry_words --argument-names wanted
    set --local words (commandline --tokenize --current-process --cut-at-cursor)
    set --local option
    for word in $words[3..-1]
        if test -n "$option"
            if test $wanted = folders; and contains -- $option -I --include
                echo $word
            end
            set option
            continue
        end
        switch $word
            case -I --include -o --output --stdin-filename --color --depth --value --default \
                --format --max-warnings --limit --before --after --from --to
                set option $word
            case '-?*'
            case '*'
                test $wanted = arguments; and echo $word
        end
    end
end

# Whether a command with paths has the number of arguments before the cursor.
function __quarry_argument --argument-names number
    test (count (__quarry_words arguments)) -eq $number
end

# Prints the paths of the items in the group in which the word lies; those of groups with a slash,
# too.
function __quarry_paths
    set --local file (__quarry_words arguments)[1]
    set --local word (string replace --regex '^--[a-z]+=' '' -- (commandline --current-token --cut-at-cursor | string unescape))
    set --local group (string match --regex --groups-only '^(.*)/' -- $word)
    set --local depth (count (string split --no-empty / -- $group))
    set --local folders
    for folder in (__quarry_words folders)
        set --append folders -I $folder
    end
    for entry in (quarry list --quiet --null --depth 1 $folders -- $file $group 2>/dev/null | string split0)
        set --local parts (string split / -- $entry)
        set --local name $parts[(math $depth + 1)]
        if test -z "$name"
            continue
        end
        if test -n "$group"
            set name $group/$name
        end
        if test (count $parts) -gt (math $depth + 1)
            echo $name/
        else
            echo $name
        end
    end
end

complete --command quarry --no-files
complete --command quarry --short-option h --long-option help --description 'Show help'
complete --command quarry --condition __quarry_uses --long-option version --description 'Show the version'

# --- Commands

complete --command quarry --condition __quarry_uses --arguments tree --description 'Show the items as a tree'
complete --command quarry --condition __quarry_uses --arguments list --description 'Show the items with their paths'
complete --command quarry --condition __quarry_uses --arguments find --description 'Show the items whose name matches'
complete --command quarry --condition __quarry_uses --arguments get --description 'Show the values of an item'
complete --command quarry --condition __quarry_uses --arguments explain --description 'Tell what stands at a place of a file'
complete --command quarry --condition __quarry_uses --arguments diff --description 'Show the items in which two documents differ'
complete --command quarry --condition __quarry_uses --arguments words --description 'Show the words of the text'
complete --command quarry --condition __quarry_uses --arguments expand --description 'Write the text with includes expanded'
complete --command quarry --condition __quarry_uses --arguments check --description 'Tell what is wrong in documents'
complete --command quarry --condition __quarry_uses --arguments format --description 'Lay out documents anew'
complete --command quarry --condition __quarry_uses --arguments set --description 'Set the values of an item'
complete --command quarry --condition __quarry_uses --arguments add --description 'Add an item'
complete --command quarry --condition __quarry_uses --arguments remove --description 'Remove an item or a value'
complete --command quarry --condition __quarry_uses --arguments rename --description 'Give an item another name'
complete --command quarry --condition __quarry_uses --arguments convert --description 'Turn a document into text, binary data or JSON'
complete --command quarry --condition __quarry_uses --arguments rewrite --description 'Write a document in the library\'s layout'
complete --command quarry --condition __quarry_uses --arguments encode --description 'Write a document in the binary form'
complete --command quarry --condition __quarry_uses --arguments decode --description 'Write the text of a document in the binary form'
complete --command quarry --condition __quarry_uses --arguments pack --description 'Compress a document'
complete --command quarry --condition __quarry_uses --arguments unpack --description 'Write the text of a compressed document'

# --- Options

function __quarry_option --argument-names users
    complete --command quarry --condition "__quarry_uses $users" $argv[2..-1]
end

set --local document tree words expand rewrite encode
set --local source list find get explain diff check format set add remove rename convert
set --local edit set add remove rename

__quarry_option "$document $source" --short-option I --long-option include --require-parameter --arguments '(__fish_complete_directories)' --description 'Look for documents in a folder first'
__quarry_option "$document $source decode pack unpack" --long-option stdin-filename --require-parameter --force-files --description 'What standard input is called'
__quarry_option "$document $source decode pack unpack" --long-option no-limits --description 'Read documents of any size, nesting and depth of includes'
__quarry_option "$document decode list find get diff check convert" --short-option q --long-option quiet --description 'Show no warnings'
__quarry_option "$edit convert rewrite encode decode pack unpack" --short-option o --long-option output --require-parameter --force-files --description 'Where to write to'
__quarry_option 'tree list find explain diff words check format' --long-option color --exclusive --arguments 'auto always never' --description Colours
__quarry_option 'tree list find' --long-option depth --exclusive --description 'Levels of nested groups'
__quarry_option 'list get diff' --long-option json --description 'Show JSON'
__quarry_option list --short-option 0 --long-option null --description 'Paths only, each ended by a zero byte'
__quarry_option find --long-option value --exclusive --description 'A value has to match, too'
__quarry_option find --long-option not --description 'Items whose name does not match'
__quarry_option get --long-option raw --description 'Strings without quotes and escapes'
__quarry_option get --long-option null --description 'Values ended by a zero byte'
__quarry_option get --long-option default --exclusive --description 'What to show where there is no such item'
__quarry_option check --long-option format --exclusive --arguments 'text json sarif github' --description 'How findings are written'
__quarry_option check --long-option max-warnings --exclusive --description 'How many are allowed'
__quarry_option check --long-option limit --exclusive --description 'How many are written'
__quarry_option check --long-option rewrite --description 'What would not survive a rewrite, too'
__quarry_option format --long-option in-place --description 'Replace the files'
__quarry_option format --long-option check --description 'Name the files that would change'
__quarry_option format --long-option diff --description 'Show what would change'
__quarry_option 'set add' --long-option string --description 'Take every value for a string'
__quarry_option add --long-option group --description 'Add an empty group'
__quarry_option add --long-option call --description 'Add a call'
__quarry_option add --long-option before --exclusive --arguments '(__quarry_paths)' --description 'Add it before an item'
__quarry_option add --long-option after --exclusive --arguments '(__quarry_paths)' --description 'Add it behind an item'
__quarry_option convert --long-option from --exclusive --arguments 'text binary json' --description 'What is read'
__quarry_option convert --long-option to --exclusive --arguments 'text binary json object' --description 'What is written'

# --- Files and paths

set --local paths list get set add remove rename

complete --command quarry --condition 'not __quarry_uses; and __quarry_argument 0' --force-files
complete --command quarry --condition '__quarry_uses diff explain; and __quarry_argument 1' --force-files
complete --command quarry --condition '__quarry_uses check format' --force-files
complete --command quarry --condition "__quarry_uses $paths; and __quarry_argument 1" --arguments '(__quarry_paths)'

functions --erase __quarry_option
