#!/usr/bin/env bash
# tests/faults/odd_surroundings.sh [BVCTL]: the program is started where directories cannot be listed, openings are
# refused for a moment, standard streams are closed or files may not grow; nothing gets lost, and what failed is said.
# shellcheck disable=SC2317 # check calls functions by name
set -u
# shellcheck source=checks.bash
. "$(dirname "$0")/checks.bash"

server=$work/server
"$root/tools/layout-demo" "$server"
database=$server/BRIVANE/B-DB
on_server=("$program" --drive "F:=$server" --ini "F:\\" --yes)

# All names and bytes of the server's database.
picture() { (cd "$database" && md5sum ./*); }
is_unchanged() { picture | cmp -s - "$work/picture"; }
says() { grep -Eq "$1" "$work/errors"; }

# Neither an error nor a missing right to list a directory means that a file is not there.
picture >"$work/picture"
for fault in openat:error=EACCES getdents64:error=EIO; do
    while read -ra verb; do
        where="$fault, ${verb[*]}"
        strace -f -o "$work/log" -P "$database" -P "$database/" -e "trace=${fault%%:*}" -e "inject=$fault" \
            "${on_server[@]}" "${verb[@]}" </dev/null >"$work/output" 2>"$work/errors"
        status=$?
        check "ends with $status" test "$status" = 1
        check "the fault was not met" grep -q INJECTED "$work/log"
        check "no message" test -s "$work/errors"
        check "the files have changed" is_unchanged
    done <<'VERBS'
lcr add Description=New Server=LEEDS
destination country add XX DiallingCode=999 Description=Nowhere
router set LocalServerID=OTHER
dialling set Location=Elsewhere
routing add subaddr 1234 GRETA
VERBS
done
report "directories that cannot be listed"

# A file system that knows no modes does not stop a save; the new file is then for its owner alone.
where="modes are refused"
add_area() { "$@" "${on_server[@]}" destination area add FR PAR Description=Paris >"$work/output" 2>"$work/errors"; }
check "fails" add_area strace -f -o "$work/log" -e trace=fchmod -e inject=fchmod:error=EPERM
check "the fault was not met" grep -q INJECTED "$work/log"
check "no new file of the owner's alone" test "$(stat -c %a "$database"/[Aa]rea33.ini)" = 600
report "modes that are refused"

# An opening that the system refuses for a moment.
printf '[A]\r\nk: 1\r\n' >"$work/before"
set_key() { "$@" "$program" file set "$file" A k 2 </dev/null >"$work/output" 2>"$work/errors"; }
for error in EAGAIN EBUSY; do
    cp "$work/before" "$file"
    where=$error
    check "fails" set_key strace -f -o "$work/log" -P "$file" -e trace=openat -e "inject=openat:error=$error:when=1..3"
    check "the fault was not met" grep -q INJECTED "$work/log"
    check "no new text" grep -q '^k: 2' "$file"
done
report "openings that are refused for a moment"

# A file does not get the number of a closed stream, and what is said does not get into it.
set_device() { "${on_server[@]}" device set MODEM-1 Port=COM3; }
cp "$database/SETUP.INI" "$work/before"
set_device 2>"$work/errors"
cp "$database/SETUP.INI" "$work/after"
for closed in '2>&-' '>&- 2>&-' '<&- >&- 2>&-'; do
    cp "$work/before" "$database/SETUP.INI"
    where="device set $closed"
    check "fails" eval "set_device $closed"
    check "not the new text" same "$database/SETUP.INI" "$work/after"
done
where="results to a closed output"
list_users() { "${on_server[@]}" user list >&- 2>"$work/errors"; }
check "are taken for written" not list_users
check "no message" says '^Unable to write the results$'
report "closed streams"

# A file that may not grow any more is like a full disk.
{ yes '' | head -n 11000 && printf '[A]\nk: 1\n'; } >"$work/before"
cp "$work/before" "$file"
where="a limit to files"
check "success" not set_key bash -c 'ulimit -f 13; exec "$@"' -
check "no message" has_message "$work/errors"
check "the old text is not whole" same "$file" "$work/before"
check "a temporary is left" not test -e "$temporary"
report "files that may not grow"
finish
