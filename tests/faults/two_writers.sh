#!/usr/bin/env bash
# tests/faults/two_writers.sh [BVCTL [LOCK_HOLDER]]: several processes want one control file at the same time. No change
# is lost, and a process that cannot have the file in time says so.
# shellcheck disable=SC2317 # check calls functions by name
set -u
# shellcheck source=checks.bash
. "$(dirname "$0")/checks.bash"
holder=$(realpath "${2:-$(dirname "$program")/tests/lock_holder}")

readonly keys=100 timeout=5 # changes of each writer; seconds that a file is waited for

# at_once COMMAND...: runs the command twice at the same time, with a and with b as a last argument.
at_once() {
    "$@" a >"$work/a" 2>&1 &
    local one=$!
    "$@" b >"$work/b" 2>&1 &
    local two=$!
    check "one gave up" wait "$one"
    check "the other gave up" wait "$two"
}

write_keys() {
    local n
    for ((n = 1; n <= keys; n++)); do "$program" file set "$file" KEYS "$1$n" "$n" || return; done
}

all_keys() { seq "$keys" | sed -n 's/.*/a&: &/p; s/^a/b/p' | sort; }
found_keys() { "$program" file list "$file" KEYS | sort; }

where="two writers"
: >"$file"
at_once write_keys
check "keys are missing" test "$(found_keys)" = "$(all_keys)"
check "a temporary is left" not test -e "$temporary"
report "two writers, each with $keys keys of its own"

# Users who sort among those of the server.
"$root/tools/layout-demo" "$work/server"
users=$work/server/BRIVANE/B-DB/USERLIST.INI
bvctl_user() { "$program" --drive "F:=$work/server" --ini "F:\\" --yes user "$@"; }
names() { bvctl_user list | cut -f 1; }
each_user() {
    local n
    for n in {01..10}; do bvctl_user "$1" "K$n$2" || return; done
}

where="two that add users"
cp "$users" "$work/before"
all_names=$({ names && echo K{01..10}{a,b} | tr ' ' '\n'; } | LC_ALL=C sort)
at_once each_user add
check "users are missing or out of order" test "$(names)" = "$all_names"
where="two that delete users"
at_once each_user delete
check "the list is not as before" same "$users" "$work/before"
check "a temporary is left" not test -e "${users%INI}TMP"
report "two that add users and delete them"

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
