# SPDX-License-Identifier: MIT
# Completion of nuv-launcher for fish. The options are those that its help lists, the tags those of the
# configuration file that it would read.

function __nuv_launcher_tags
    set -l file AppsConfig.json
    test -e "$NUV_APPS_CONFIG_FILE"; and set file $NUV_APPS_CONFIG_FILE
    grep -oE '"Tag"[[:space:]]*:[[:space:]]*"[^"\\\\]+"' $file 2>/dev/null | sed 's/"$//; s/.*"//'
end

function __nuv_launcher
    set -l words (commandline -opc)
    set -l current (commandline -ct)
    set -l help ($words[1] --help 2>/dev/null)
    set -l option $words[-1]
    set -l before ''
    if string match -q -- '--*=*' $current
        set option (string split -m 1 = -- $current)[1]
        set before $option=
    end
    set option (string escape --style=regex -- $option)
    switch (string replace -rf -- "^  $option ([A-Z][A-Za-z]*) .*" '$1' $help; or echo)
        case FILE
            __fish_complete_path "$current"
        case WxH
            printf '%s\n' "$before"{1280x720,1920x1080,3840x2160}
        case ''
            if string match -q -- '-*' $current
                string replace -rf -- '^  (--[a-z]+)( [A-Z][A-Za-z]*)? +(.*)' '$1'\t'$3' $help
            else
                __nuv_launcher_tags
            end
    end
end
complete -c nuv-launcher -f -a '(__nuv_launcher)'
