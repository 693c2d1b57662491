# Completion of kestrinctl for fish.

set -l commands apps catalog check watch log live status on off pause resume protect unprotect recommended enforce schedule autostart desktop diagnostics
set -l definitions zoom facetime teams quicktime voice-memos photo-booth chrome safari wispr-flow rewind macwhisper otter
set -l presets sleep away focus travel manual
set -l kinds privacyModeOn privacyModeOff riskAppMatched relaunchDetected quitRequested dryRun actionFailed deviceUse
set -l none "not __fish_seen_subcommand_from $commands"

complete -c kestrinctl -f
complete -c kestrinctl -s h -l help -d 'Explain with examples'
complete -c kestrinctl -n $none -l version -d 'Print the version'

complete -c kestrinctl -n $none -a apps -d 'List the running applications as Kestrin sees them'
complete -c kestrinctl -n $none -a catalog -d 'List the applications that Kestrin knows, and which are protected'
complete -c kestrinctl -n $none -a check -d 'Check the running applications once'
complete -c kestrinctl -n $none -a watch -d 'React to launches, run the schedules and print each new event'
complete -c kestrinctl -n $none -a log -d 'Print events of the activity log'
complete -c kestrinctl -n $none -a live -d 'Tell who uses microphone, camera or screen right now'
complete -c kestrinctl -n $none -a status -d 'Tell how Privacy Mode, monitor, selection and schedules stand'
complete -c kestrinctl -n $none -a on -d 'Turn Privacy Mode on'
complete -c kestrinctl -n $none -a off -d 'Turn Privacy Mode off'
complete -c kestrinctl -n $none -a pause -d 'Turn Privacy Mode off for a while'
complete -c kestrinctl -n $none -a resume -d 'End a pause of Privacy Mode'
complete -c kestrinctl -n $none -a protect -d 'Protect applications of the catalog'
complete -c kestrinctl -n $none -a unprotect -d 'Stop protecting applications of the catalog'
complete -c kestrinctl -n $none -a recommended -d 'Protect every application of the catalog'
complete -c kestrinctl -n $none -a enforce -d 'Choose between quit requests and previews'
complete -c kestrinctl -n $none -a schedule -d 'List the schedule presets, enable or disable them'
complete -c kestrinctl -n $none -a autostart -d 'Tell or choose whether Kestrin starts at login'
complete -c kestrinctl -n $none -a desktop -d 'Let the desktop show its windows to Kestrin, or no longer'
complete -c kestrinctl -n $none -a diagnostics -d 'Print five lines for a report'

set -l catalog '__fish_seen_subcommand_from catalog; and'
complete -c kestrinctl -n "$catalog not __fish_seen_subcommand_from add remove candidates" -a 'add remove candidates'
complete -c kestrinctl -n "$catalog __fish_seen_subcommand_from add" -a '(kestrinctl catalog candidates 2>/dev/null)'
complete -c kestrinctl -n "$catalog __fish_seen_subcommand_from add" -l running -x -d 'Add what runs' \
    -a '(kestrinctl catalog candidates 2>/dev/null | string match "*"\trunning)'
complete -c kestrinctl -n "$catalog __fish_seen_subcommand_from add" -l identifier -x -d 'An identifier of it'
complete -c kestrinctl -n "$catalog __fish_seen_subcommand_from add" -l alias -x -d 'A further name of it'
complete -c kestrinctl -n "$catalog __fish_seen_subcommand_from add" -l category -x -d 'What it can do' \
    -a 'microphone camera screenCapture aiTool videoCall browser'
complete -c kestrinctl -n "$catalog __fish_seen_subcommand_from add" -l action -x -d 'What is done with it' \
    -a 'allow quit keepClosed'
# The user's own applications come behind the twelve that are built in.
set -l own '(kestrinctl catalog 2>/dev/null | string replace -rf "^[* ] +(\S+) +\S.*" \'$1\' | tail -n +14)'
complete -c kestrinctl -n "$catalog __fish_seen_subcommand_from remove" -a "$own"
complete -c kestrinctl -n '__fish_seen_subcommand_from protect unprotect' -a "$own"

complete -c kestrinctl -n "__fish_seen_subcommand_from $commands; and not __fish_seen_subcommand_from desktop diagnostics" \
    -l json -d 'Print JSON for programs'
complete -c kestrinctl -n '__fish_seen_subcommand_from check' -l preview -d 'Only preview, ask nobody to quit'
set -l log '__fish_seen_subcommand_from log'
complete -c kestrinctl -n $log -l limit -x -d 'Print at most this many events'
complete -c kestrinctl -n $log -l all -d 'Print however many there are'
complete -c kestrinctl -n $log -l since -x -a 'today yesterday now' -d 'Print none that is older'
complete -c kestrinctl -n $log -l until -x -a 'today yesterday now' -d 'Print none that is newer'
complete -c kestrinctl -n $log -l kind -x -a "$kinds" -d 'Print this kind'
complete -c kestrinctl -n $log -l app -x -d 'Print those about an application'
complete -c kestrinctl -n $log -l search -x -d 'Print those that say this'
complete -c kestrinctl -n '__fish_seen_subcommand_from log live' -l follow -d 'Go on with those that come'
complete -c kestrinctl -n $log -l format -x -a 'text json jsonl csv' -d 'Print them in this form'
complete -c kestrinctl -n '__fish_seen_subcommand_from protect unprotect' -a "$definitions"
complete -c kestrinctl -n '__fish_seen_subcommand_from pause; and not __fish_seen_subcommand_from until' \
    -a '15m 1h 2h until'
complete -c kestrinctl -n '__fish_seen_subcommand_from pause; and __fish_seen_subcommand_from until' -a tomorrow
complete -c kestrinctl -n '__fish_seen_subcommand_from live enforce autostart; and not __fish_seen_subcommand_from on off' \
    -a 'on off'
complete -c kestrinctl -n '__fish_seen_subcommand_from desktop schedule; and not __fish_seen_subcommand_from enable disable' \
    -a 'enable disable'
complete -c kestrinctl -n '__fish_seen_subcommand_from schedule; and __fish_seen_subcommand_from enable disable' \
    -a "$presets"
