# Completion of kestrinctl for bash.

# The identifiers of the user's own applications, which come behind the twelve that are built in.
_kestrinctl_own() {
    kestrinctl catalog 2>/dev/null | sed -n '14,$s/^[* ] *\([^ ]*\)  *[^ ].*/\1/p'
}

# Offers what could be added and begins with what is typed, spelled as the shell wants it: applications that run, or
# also those that are installed.
_kestrinctl_candidates() {
    local typed=${2//\\/} quote='' name state
    if [[ $typed == [\"\']* ]]; then
        quote=${typed:0:1} typed=${typed:1}
    fi
    while IFS=$'\t' read -r name state; do
        [[ $name == "$typed"* && $1 == *"$state"* ]] || continue
        [ -n "$quote" ] || printf -v name %q "$name"
        COMPREPLY+=("$name")
    done < <(kestrinctl catalog candidates 2>/dev/null)
}

_kestrinctl() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local commands='apps catalog check watch log live status on off pause resume protect unprotect recommended enforce
        schedule autostart desktop diagnostics'
    local definitions='zoom facetime teams quicktime voice-memos photo-booth chrome safari wispr-flow rewind
        macwhisper otter'
    local kinds='privacyModeOn privacyModeOff riskAppMatched relaunchDetected quitRequested dryRun actionFailed deviceUse'
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
    live)
        words='--follow --json --help'
        [ -n "$verb" ] || words="on off $words"
        ;;
    desktop)
        words='--help'
        [ -n "$verb" ] || words="enable disable $words"
        ;;
    diagnostics) words='--help' ;;
    pause)
        words='--json --help'
        case $previous in
        pause) words="15m 1h 2h until $words" ;;
        until) words=tomorrow ;;
        esac
        ;;
    protect | unprotect) words="$definitions $(_kestrinctl_own) --json --help" ;;
    catalog)
        case $verb in
        '') words='add remove candidates --json --help' ;;
        add) words='--running --identifier --alias --category --action --json --help' ;;
        remove) words="$(_kestrinctl_own) --json --help" ;;
        candidates) words='--json --help' ;;
        esac
        ;;
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
    # There is no telling what comes here, or it is one of a few.
    case $previous in
    --limit | --app | --search | --identifier | --alias | --running) words='' ;;
    --category) words='microphone camera screenCapture aiTool videoCall browser' ;;
    --action) words='allow quit keepClosed' ;;
    esac

    COMPREPLY=()
    case $command,$verb,$previous in
    catalog,add,--running) _kestrinctl_candidates running "$word" ;;
    catalog,add,add) _kestrinctl_candidates 'running installed' "$word" ;;
    esac
    # Not mapfile: the bash of macOS does not have it. None of the words holds a space.
    while IFS= read -r i; do
        COMPREPLY+=("$i")
    done < <(compgen -W "$words" -- "$word")
}

complete -F _kestrinctl kestrinctl
