# Sourced: a numbered list of steps with one progress line each.
#
#   step "Title" command argument...            queues a step
#   essential_step "Title" command argument...  one without which the following ones make no sense
#   shown_step "Title" command argument...      one whose output is there to be read
#   run_steps                                   runs them all, also when an ordinary one failed
#
# What the other steps print is shown only when they fail, or as it comes when `verbose` is set. run_steps returns 1
# when any step failed, after a line on standard error that names those that did.
# shellcheck shell=bash

verbose=${verbose:-}
step_titles=()
step_commands=()
step_kinds=()

step() {
    step_titles+=("$1")
    shift
    step_commands+=("${*@Q}")
    step_kinds+=(ordinary)
}

essential_step() {
    step "$@"
    step_kinds[-1]=essential
}

shown_step() {
    step "$@"
    step_kinds[-1]=shown
}

run_steps() {
    local i failed=()
    for i in "${!step_titles[@]}"; do
        printf '[%d/%d] %s ' $((i + 1)) ${#step_titles[@]} "${step_titles[i]}"
        run_step "${step_kinds[i]}" "${step_commands[i]}" && continue
        failed+=("${step_titles[i]}")
        [ "${step_kinds[i]}" != essential ] || break
    done
    [ ${#failed[@]} = 0 ] && return
    printf 'Failed:%s\n' "$(printf ' %s;' "${failed[@]}")" >&2
    return 1
}

run_step() {
    local output result=0 start=$SECONDS
    if [ "$1" = shown ]; then
        echo
        eval "$2"
        return
    fi
    output=$(mktemp)
    if [ -n "$verbose" ]; then
        echo
        eval "$2" || result=$?
    else
        eval "$2" >"$output" 2>&1 || result=$?
    fi
    if [ "$result" = 0 ] && grep '^Not checked: ' "$output"; then
        :
    elif [ "$result" = 0 ]; then
        printf -- '- %d s\n' $((SECONDS - start))
    else
        printf -- '- FAILED after %d s\n' $((SECONDS - start))
        cat "$output"
    fi
    rm -f "$output"
    return "$result"
}
