# SPDX-License-Identifier: MIT
# Completion of nuv-apps-config for fish. The program itself says what may come next.

function __nuv_apps_config
    set -l current (commandline -ct)
    set -l words (commandline -opc)
    for line in ($words[1] __complete $words[2..-1] "$current" 2>/dev/null)
        switch $line
            case :files
                __fish_complete_path "$current"
            case :directories
                __fish_complete_directories "$current"
            case '*'
                echo $line
        end
    end
end
complete -c nuv-apps-config -f -a '(__nuv_apps_config)'
