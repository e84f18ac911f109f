#!/usr/bin/env bash
# tests/faults/strace_faults.sh [--all] [BVCTL [CALL...]]: calls to the system for a control file, its temporary or its
# locks fail while a verb changes it, in place or by replacing it whole, once and from then on, or end the program; what
# is left is checked. All such calls or those named. A close that fails is not among the faults: strace would keep the
# file open.
#
# Of the calls of one name that a verb makes, the first, the one in the middle and the last fail; with --all every one
# in its turn, and two more ways in which a rewrite changes the length are gone through (4 minutes).
# shellcheck disable=SC2317 # check calls functions by name
set -u
every=no
if [ "${1:-}" = --all ]; then every=yes && shift; fi
# shellcheck source=checks.bash
. "$(dirname "$0")/checks.bash"

repeat() { yes "$2" | head -n "$1"; }
blanks=$(printf '%60s' '')
padding=xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx

server=$work/server
"$root/tools/layout-demo" "$server"
database=$server/BRIVANE/B-DB

# The changes: in the four ways in which a rewrite changes the length, where the large ones need several calls to copy; in
# a list; of a file that is replaced whole; and the same under the lock of routing.
changes=(small_grows large_shrinks user_is_added router_is_set rule_is_set)
[ $every = no ] || changes+=(large_grows large_keeps)

# The texts before them.
before_small_grows() { printf '[A]\r\nk: 1\r\n\r\n[B]\r\nm: 2\r\n'; }
before_large_grows() { repeat 2500 "$padding" && before_small_grows; }
before_large_shrinks() { repeat 2500 "$padding$blanks"$'\r' && before_small_grows; }
before_large_keeps() { repeat 2500 "$padding"$'\r' && printf '[A]\r\nk: 123456\r\n'; }
before_user_is_added() { cat "$root/samples/server/BRIVANE/B-DB/USERLIST.INI"; }
before_router_is_set() { cat "$root/samples/server/BRIVANE/B-DB/SETUP.INI"; }
before_rule_is_set() { cat "$root/samples/server/BRIVANE/B-DB/LCRRULES.INI"; }

# use FILE TEMPORARY MESSAGE [LOCK...]: what the calls are for, and how the verb's message about it begins.
use() {
    file=$1 temporary=$2 message=$3 beside=("$2" "${@:4}") watched=()
    local path
    for path in "$file" "${beside[@]}"; do watched+=(-P "$path"); done
}

# The files of the change and the verb that makes it.
prepare() {
    local error="((ERROR - )?Unable to (open|create|update) file|Error (writing to|updating) file|File error: couldn't open)"
    case $change in
        user_is_added)
            use "$database/USERLIST.INI" "$database/USERLIST.TMP" "$error .*USERLIST\.(INI|TMP)\$"
            verb=(user add IVY)
            ;;
        router_is_set)
            use "$database/SETUP.INI" "$database/Setup.new" "$error .*SETUP\.(INI|NEW)\$" "$database/SETUP.LCK"
            verb=(router set LocalServerID=OTHER)
            ;;
        rule_is_set)
            use "$database/LCRRULES.INI" "$database/LCRRules.new" "$error .*LCRRULES\.(INI|NEW)\$|LCR settings are being edited" \
                "$database/LCRRULES.LCK" "$server/BRIVANE/B-REQ/LCREDIT.LOK"
            verb=(lcr set 2 Description=Longer)
            ;;
        *)
            use "$work/SETUP.INI" "$work/SETUP.TMP" '(Unable to open|Error updating) file .*SETUP\.INI$'
            verb=(file set "$file" A k longer)
            ;;
    esac
    "before_$change" >"$work/before"
    cp "$work/before" "$file"
    rm -f "${beside[@]}"
}

has_its_message() { grep -Eiq "^($message)" "$work/errors"; }

on_server=("$program" --drive "F:=$server" --ini "F:\\" --yes)

# make_change [STRACE...]
make_change() { "$@" "${on_server[@]}" "${verb[@]}" </dev/null >"$work/output" 2>"$work/errors"; }

# Who is in the list cannot be added again, and a new text of the rules waits until somebody says what becomes of it.
make_change_again() {
    case $change in
        user_is_added) "${on_server[@]}" user delete IVY >/dev/null 2>&1 ;;
        rule_is_set) "${on_server[@]}" lcr recover --drop >/dev/null 2>&1 ;;
    esac
    make_change
}

# Runs with one fault and checks what is left.
run_with() {
    local call=$1 fault=$2 status=0
    cp "$work/before" "$file"
    rm -f "${beside[@]}" "$work/log"
    make_change strace -f -o "$work/log" "${watched[@]}" -e "trace=$call" -e "inject=$call:$fault" \
        2>"$work/shell" || status=$?
    where="$change, $call:$fault, status $status"
    case $status in
        0) check_success "$call" ;;
        1) check_refusal "$call:$fault" ;;
        137) check_kill ;;
        *) check "an end that is none of the three" false ;;
    esac
    check "the fault was not met" grep -Eq 'INJECTED|killed by SIGKILL' "$work/log"
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
    check "no message" has_its_message
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

# numbers CALL: which of the calls are to fail in their turn.
numbers() {
    local count
    count=$(grep -Ec "^[0-9]+ +$1\(" "$work/log")
    if [ $every = yes ] || [ "$count" -lt 3 ]; then seq "$count"; else printf '%s\n' 1 $(((count + 1) / 2)) "$count"; fi
}

# fail CALL FAULT: FAULT has # where the number of the call goes.
fail() {
    local n met=0
    for change in "${changes[@]}"; do
        where="$change without a fault"
        prepare
        check "fails" make_change strace -f -o "$work/log" "${watched[@]}" -e "trace=$1"
        cp "$file" "$work/after"
        for n in $(numbers "$1"); do
            run_with "$1" "${2/\#/$n}"
            met=$((met + 1))
        done
    done
    where="in all"
    check "the fault was never met" test "$met" -gt 0
    report "$1 $2"
}

calls=("${@:2}")
[ ${#calls[@]} -gt 0 ] || calls=(pwrite64 ftruncate openat unlink rename fchmod close)
for call in "${calls[@]}"; do
    fail "$call" signal=KILL:when=#
    [ "$call" != close ] || continue
    fail "$call" error=EIO:when=#
    fail "$call" error=EIO:when=#+
    case $call in pwrite64 | openat) fail "$call" error=ENOSPC:when=#+ ;; esac
    [ "$call" != pwrite64 ] || fail "$call" retval=0:when=#
done
finish
