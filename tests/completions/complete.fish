# Prints what fish offers at the end of each command line:
#
#   fish --no-config complete.fish COMPLETIONS LINE...
source $argv[1]/fish/vendor_completions.d/quarry.fish
for line in $argv[2..-1]
    for candidate in (complete --do-complete $line)
        printf '%s\t%s\n' $line (string split --fields 1 \t -- $candidate)
    end
end
