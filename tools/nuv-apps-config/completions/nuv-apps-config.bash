# Completion of nuv-apps-config for bash. Made from its tables; do not edit.

_nuv_apps_config()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local words=

    case $previous in
        --format) words='text json sarif github' ;;
        --fail-on) words='error warning note' ;;
        --color) words='auto always never' ;;
        --file|-f) mapfile -t COMPREPLY < <(compgen -f -- "$current"); return ;;
    esac
    if [[ -z $words && $COMP_CWORD -eq 1 ]]; then
        words='check show list get keys explain schema template fmt diff help --help --version'
    elif [[ -z $words && $current == -* ]]; then
        case ${COMP_WORDS[1]} in
            check) words='--root --ignore --fail-on --format --color --help' ;;
            show) words='--file --root --format --reveal --help' ;;
            list) words='--file --format --help' ;;
            get) words='--file --help' ;;
            keys) words='--file --format --reveal --help' ;;
            explain) words='--help' ;;
            schema) words='--help' ;;
            template) words='--help' ;;
            fmt) words='--sort --write --help' ;;
            diff) words='--format --reveal --help' ;;
            help) words='--help' ;;
        esac
    elif [[ -z $words && ${COMP_WORDS[1]} == explain ]]; then
        words='Global Applications Version RemoteInspectorPort Certificate Tag Url UserAgent UserScript HttpProxy HttpReferrer Scale WindowOpacity UseTransparentBackground Frameless StartMaximized ShowChrome ShowScrollbar ProhibitMainFrameScrolling ResizesToContents DisableSpatialNavigation UseGraphicsView UseCompositing UseTiledBackingStore UseWebGL UseFrameFlattening ShowDebugBorders ShowFrameRate CacheWebView UseDiskCache UseDiskCookies UseLocalStorage UseOfflineStorageDatabase OfflineStorageDatabaseEnabled OfflineStorageDefaultQuotaSize UseOfflineWebApplicationCache OfflineWebApplicationCacheEnabled LocalContentCanAccessRemoteUrls GrantBroadcastRelatedSecurityClearance GrantBroadcastAccessRightDomains NetworkSessionNoAutoClose EnableShowErrorPage PrintLoadedUrls SuppressWebCoreWarningMessages Path PrivateKey PassPhrase Domain no-file unreadable-file variable-names-nothing empty-file not-text too-deep other-format merge-conflict cut-off nul-bytes byte-order-mark comment trailing-comma extra-comma missing-comma missing-colon missing-value single-quotes smart-quotes unquoted-key unquoted-text wrong-keyword unterminated-string missing-opening-quote unescaped-quote extra-quote missing-closing-brace missing-closing-bracket extra-closing-bracket missing-opening-bracket wrong-bracket bad-number invisible-character unexpected-token text-after-end stray-b leading-comma leading-zero odd-number lost-digits unescaped-backslash bad-unicode-escape short-unicode-escape raw-control-character non-ascii-text not-an-object no-version unusable-version no-applications unknown-key misplaced-key top-level-certificate wrong-kind out-of-range port-out-of-range port-means-unset no-address unusable-address unusable-proxy unusable-domain unusable-user-agent missing-file missing-here control-character blank-at-edge no-tag empty-tag tag-not-text duplicate-tag similar-tag duplicate-key null-value slash-in-key size-key huge-size plain-domain no-domain needs-certificate unused-ignore no-effect two-names certificate-missing certificate-unreadable certificate-invalid wrong-pass-phrase certificate-mismatch certificate-expired key-readable-by-all certificate-unexamined'
    fi
    if [[ -n $words ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}
complete -o filenames -F _nuv_apps_config nuv-apps-config
