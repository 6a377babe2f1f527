# Completion of varnik-cli for fish. The program itself says what may stand at the cursor.
function __varnik_cli
    set -l words (commandline -opc)
    set -l word (commandline -ct | string trim --left --chars '\'"')
    for line in ($words[1] complete $words[2..-1] "$word" 2>/dev/null)
        switch $line
            case :file
                __fish_complete_path "$word"
            case :folder
                __fish_complete_directories "$word"
            case ':*'
            case '*'
                echo $line
        end
    end
end

complete -c varnik-cli -f -a '(__varnik_cli)'
