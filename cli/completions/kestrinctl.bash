# Completion of kestrinctl for bash.

_kestrinctl() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local commands='apps catalog check watch log status on off protect unprotect recommended enforce schedule
        autostart desktop diagnostics'
    local definitions='zoom facetime teams quicktime voice-memos photo-booth chrome safari wispr-flow rewind
        macwhisper otter'
    local kinds='privacyModeOn privacyModeOff riskAppMatched relaunchDetected quitRequested dryRun actionFailed'
    local presets='sleep away focus travel manual'

    # The command is the first word that is no option; the word behind it decides about presets.
    local command='' verb='' i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        -*) ;;
        *)
            if [ -z "$command" ]; then
                command=${COMP_WORDS[i]}
            elif [ -z "$verb" ]; then
                verb=${COMP_WORDS[i]}
            fi
            ;;
        esac
    done

    local words=''
    case $command in
    '') words="$commands --help --version" ;;
    check) words='--preview --json --help' ;;
    log)
        words='--limit --all --since --until --kind --app --search --follow --format --json --help'
        case $previous in
        --kind) words=$kinds ;;
        --format) words='text json jsonl csv' ;;
        --since | --until) words='today yesterday now' ;;
        esac
        ;;
    desktop)
        words='--help'
        [ -n "$verb" ] || words="enable disable $words"
        ;;
    diagnostics) words='--help' ;;
    protect | unprotect) words="$definitions --json --help" ;;
    enforce | autostart)
        words='--json --help'
        [ -n "$verb" ] || words="on off $words"
        ;;
    schedule)
        case $verb in
        '') words='enable disable --json --help' ;;
        enable | disable) words="$presets --json --help" ;;
        esac
        ;;
    *) [[ " ${commands//$'\n'/ } " != *" $command "* ]] || words='--json --help' ;;
    esac
    # There is no telling what comes here.
    case $previous in --limit | --app | --search) words='' ;; esac

    COMPREPLY=()
    # Not mapfile: the bash of macOS does not have it. None of the words holds a space.
    while IFS= read -r i; do
        COMPREPLY+=("$i")
    done < <(compgen -W "$words" -- "$word")
}

complete -F _kestrinctl kestrinctl
