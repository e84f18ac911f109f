#!/usr/bin/env bash
# tests/faults/held_file.sh [BVCTL [LOCK_HOLDER]]: another process holds the control file. Who cannot have it in time says
# so, and who can makes the change.
# shellcheck disable=SC2317 # check calls functions by name
set -u
# shellcheck source=checks.bash
. "$(dirname "$0")/checks.bash"
holder=$(realpath "${2:-$(dirname "$program")/tests/lock_holder}")

readonly timeout=5 # seconds that a file is waited for

# hold NAME ACCESS DENIAL: a holder of NAME/SETUP.INI, started and waited for; its process is $pid.
hold() {
    mkdir "$work/$1"
    printf '[A]\r\nk: 1\r\n' >"$work/$1/SETUP.INI"
    : >"$work/$1/signal"
    "$holder" "$work/$1/SETUP.INI" "$2" "$3" "$work/$1/signal" &
    pid=$!
    disown "$pid" # its end is no news
    until grep -qs 'held\|refused' "$work/$1/signal.state"; do sleep 0.05; done
}

set_key() { "$program" file set "$work/$1/SETUP.INI" A k 2 2>"$work/$1/errors"; }

# Sets in the background; NAME/result will be its exit status and the seconds it took.
set_key_timed() {
    local status=0 start=$EPOCHSECONDS
    set_key "$1" || status=$?
    echo "$status $((EPOCHSECONDS - start))" >"$work/$1/result"
}

hold reader r -
set_key_timed reader &
first=$!
hold writer w x
set_key_timed writer &
wait "$first" "$!"
for name in reader writer; do
    where="a $name that does not let go"
    read -r status seconds <"$work/$name/result"
    check "exit status $status" test "$status" = 1
    check "gave up after $seconds seconds" test "$seconds" -ge "$timeout"
    check "no message" has_message "$work/$name/errors"
    check "the wrong message" grep -q '^Unable to open file' "$work/$name/errors"
    check "not the old text" grep -q 'k: 1' "$work/$name/SETUP.INI"
    check "a temporary is left" not test -e "$work/$name/SETUP.TMP"
    rm "$work/$name/signal"
done
report "a file that is held for too long"

for access in r w; do
    where="a holder that is killed, access $access"
    hold "killed-$access" "$access" x
    (sleep 1 && kill -KILL "$pid") &
    check "fails" set_key "killed-$access"
    check "not the new text" grep -q 'k: 2' "$work/killed-$access/SETUP.INI"
done
report "a file that is let go in time"
finish
