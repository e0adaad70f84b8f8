# SPDX-License-Identifier: MIT
# Completion of nuv-launcher for bash. The options are those that its help lists, the tags those of the
# configuration file that it would read.

_nuv_launcher_tags()
{
    local file=AppsConfig.json
    [[ -e ${NUV_APPS_CONFIG_FILE-} ]] && file=$NUV_APPS_CONFIG_FILE
    grep -oE '"Tag"[[:space:]]*:[[:space:]]*"[^"\\]+"' "$file" 2> /dev/null | sed 's/"$//; s/.*"//'
}

_nuv_launcher()
{
    local help current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} name value
    help=$("$1" --help 2> /dev/null)
    COMPREPLY=()

    # bash makes three words of --size=1280x720.
    [[ $current == = ]] && current=
    [[ $before == = ]] && before=${COMP_WORDS[COMP_CWORD - 2]}
    [[ ${COMP_WORDS[COMP_CWORD]} == = ]] && before=${COMP_WORDS[COMP_CWORD - 1]}
    value=$(awk -v name="$before" '$1 == name && $2 ~ /^[A-Z]/ { print $2 }' <<< "$help")
    case $value in
        FILE) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
        WxH) mapfile -t COMPREPLY < <(compgen -W "1280x720 1920x1080 3840x2160" -- "$current") ;;
        ?*) ;;
        *)
            while IFS= read -r name; do
                [[ $name == "$current"* ]] && COMPREPLY+=("$name")
            done < <(
                [[ $current != -* ]] || sed -n 's/^  \(--[a-z]*\).*/\1/p' <<< "$help"
                [[ $current == -* ]] || _nuv_launcher_tags
            )
            ;;
    esac
}
complete -o filenames -F _nuv_launcher nuv-launcher
