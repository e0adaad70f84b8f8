# SPDX-License-Identifier: MIT
# Completion of nuv-apps-config for bash. The program itself says what may come next.

_nuv_apps_config()
{
    local word line full current i
    local -a words=()

    # bash makes three words of --format=json.
    for ((i = 1; i <= COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $i -gt 1 && ($word == = || ${COMP_WORDS[i - 1]} == =) ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
    done
    full=${words[-1]}
    current=${COMP_WORDS[COMP_CWORD]#=}

    COMPREPLY=()
    while IFS= read -r line; do
        line=${line%%$'\t'*}
        case $line in
            :files) mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "$current") ;;
            :directories) mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -d -- "$current") ;;
            "$full"*) COMPREPLY+=("${line#"${full%"$current"}"}") ;;
        esac
    done < <("$1" __complete "${words[@]}" 2> /dev/null)
}
complete -o filenames -F _nuv_apps_config nuv-apps-config
