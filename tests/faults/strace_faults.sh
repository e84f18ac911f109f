#!/usr/bin/env bash
# tests/faults/strace_faults.sh [BVCTL [CALL...]]: each call to the system that changes a control file or its temporary
# during "bvctl file set" or "bvctl user add" fails in its turn, once and from then on, or ends the program; what is
# left is checked. All such calls or those named. A close that fails is not among the faults: strace would keep the
# file open.
# shellcheck disable=SC2317 # check calls functions by name
set -u
# shellcheck source=checks.bash
. "$(dirname "$0")/checks.bash"

repeat() { yes "$2" | head -n "$1"; }
blanks=$(printf '%60s' '')
padding=xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx

server=$work/server
"$root/tools/layout-demo" "$server"

# The text before: in the four ways in which a rewrite changes the length, where the large ones need several calls to
# copy; and a user list.
before_small_grows() { printf '[A]\r\nk: 1\r\n\r\n[B]\r\nm: 2\r\n'; }
before_large_grows() { repeat 12000 "$padding" && before_small_grows; }
before_large_shrinks() { repeat 12000 "$padding$blanks"$'\r' && before_small_grows; }
before_large_keeps() { repeat 12000 "$padding"$'\r' && printf '[A]\r\nk: 123456\r\n'; }
before_user_is_added() { cat "$root/samples/server/BRIVANE/B-DB/USERLIST.INI"; }

# The control file of the change, the verb that makes it, and how to find what the verb says when it cannot.
prepare() {
    if [ "$change" = user_is_added ]; then
        file=$server/BRIVANE/B-DB/USERLIST.INI
        verb=(user add IVY)
        find_message=(grep -Eq '^(Unable to (open|create|update)|Error writing to) file .*USERLIST\.(INI|TMP)$')
    else
        file=$work/SETUP.INI
        verb=(file set "$file" A k longer)
        find_message=(has_message)
    fi
    temporary=${file%INI}TMP
    "before_$change" >"$work/before"
    cp "$work/before" "$file"
}

on_server=("$program" --drive "F:=$server" --ini "F:\\" --yes)

# make_change [STRACE...]
make_change() { "$@" "${on_server[@]}" "${verb[@]}" </dev/null >"$work/output" 2>"$work/errors"; }

# Who is in the list cannot be added again.
make_change_again() {
    [ "$change" != user_is_added ] || "${on_server[@]}" user delete IVY >/dev/null 2>&1
    make_change
}

# Runs with one fault and checks what is left; false when the fault was not met any more.
run_with() {
    local call=$1 fault=$2 status=0
    cp "$work/before" "$file"
    rm -f "$temporary" "$work/log"
    make_change strace -f -o "$work/log" -P "$file" -P "$temporary" -e "trace=$call" -e "inject=$call:$fault" \
        2>"$work/shell" || status=$?
    where="$change, $call:$fault, status $status"
    case $status in
        0) check_success "$call" ;;
        1) check_refusal "$call:$fault" ;;
        137) check_kill ;;
        *) check "an end that is none of the three" false ;;
    esac
    grep -Eq 'INJECTED|killed by SIGKILL' "$work/log"
}

# Only the temporary's own deletion may fail with success.
check_success() {
    check "success without the new text" same "$file" "$work/after"
    case $1 in
        unlink | openat) check "a temporary that is not the new text" none_or_new ;;
        *) check "a temporary is left" not test -e "$temporary" ;;
    esac
}

none_or_new() { [ ! -e "$temporary" ] || same "$temporary" "$work/after"; }
whole() { same "$file" "$work/before" || same "$file" "$work/after"; }

# The file is cut to what was copied and the temporary is the whole new text.
is_cut() { same "$temporary" "$work/after" && head -c "$(stat -c %s "$file")" "$work/after" | cmp -s - "$file"; }

check_refusal() {
    check "no message" "${find_message[@]}" "$work/errors"
    case $1 in
        pwrite64:*+) if ! whole; then check "torn" is_cut && return; fi ;;
    esac
    check "no whole text" whole
    check "a temporary is left" not test -e "$temporary"
}

check_kill() {
    check "no whole text anywhere" whole_somewhere
    local was_whole=no
    if whole; then was_whole=yes; fi
    check "the next rewrite fails" make_change_again
    check "the next rewrite leaves its temporary" not test -e "$temporary"
    [ "$was_whole" = no ] || check "the next rewrite is wrong" same "$file" "$work/after"
    rm -f "$work"/SETUP.SA?
}

whole_somewhere() { whole || same "$temporary" "$work/after"; }

# fail CALL FAULT: at each call, until there are no more; FAULT has # where the number goes.
fail() {
    local n met=0
    for change in small_grows large_grows large_shrinks large_keeps user_is_added; do
        where="$change without a fault"
        prepare
        check "fails" make_change
        cp "$file" "$work/after"
        for ((n = 1; n < 100; n++)); do run_with "$1" "${2/\#/$n}" || break; done
        met=$((met + n - 1))
    done
    where="in all"
    check "the fault was never met" test "$met" -gt 0
    report "$1 $2"
}

calls=("${@:2}")
[ ${#calls[@]} -gt 0 ] || calls=(pwrite64 ftruncate openat unlink close)
for call in "${calls[@]}"; do
    fail "$call" signal=KILL:when=#
    [ "$call" != close ] || continue
    fail "$call" error=EIO:when=#
    fail "$call" error=EIO:when=#+
    case $call in pwrite64 | openat)
        fail "$call" error=ENOSPC:when=#
        fail "$call" error=ENOSPC:when=#+
        ;;
    esac
    [ "$call" != pwrite64 ] || fail "$call" retval=0:when=#
done
finish
