#!/usr/bin/env bash
# tests/faults/samples.sh [BVCTL]: the demo server hangs together: each verb reads its files without a complaint, and
# what one file names is in the others.
# shellcheck disable=SC2317 # check calls functions by name
set -u
# shellcheck source=checks.bash
. "$(dirname "$0")/checks.bash"

server=$work/server
"$root/tools/layout-demo" "$server"
bvctl() { "$program" --drive "F:=$server" --ini "F:\\" --yes "$@" </dev/null 2>>"$work/errors"; }
is_quiet() { bvctl "$@" >"$work/output" && [ -s "$work/output" ] && ! grep -Eqi 'unable|error|not |no longer' "$work/errors"; }

while read -ra verb; do
    where="${verb[*]}"
    : >"$work/errors"
    check "$(cat "$work/errors")" is_quiet "${verb[@]}"
done <<'VERBS'
paths
version
user list
group list
user export
device list
option list
option telnum list
coversheet list
coversheet installable
letterhead list
letterhead installable
routing list
destination country list
destination region list
destination area list 44
link list
router show
lcr rules
lcr match --pages 1
lcr permitted OFFPEAK
dialling show
number explain 1
mail-user list
VERBS
report "each file of the demo server is read"

# A user, device or rule that names what is not there is refused when it is set to what it is.
set_as_shown() {
    local assignments
    mapfile -t assignments < <(bvctl "${@:1:1}" show "${@:2}" | grep -av '\*\*\*\*\|^Name:' | sed 's/: */=/')
    bvctl "${@:1:1}" set "${@:2}" "${assignments[@]}" >/dev/null
}
where="set to what is shown"
while read -r name _; do check "user $name" set_as_shown user "$name"; done < <(bvctl user list)
while read -r name _; do check "device $name" set_as_shown device "$name"; done < <(bvctl device list)
while read -r name _; do check "link $name" set_as_shown link "$name"; done < <(bvctl link list)
while read -r number _; do check "rule $number" set_as_shown lcr "$number"; done < <(bvctl lcr rules)
report "what is shown can be set"
finish
