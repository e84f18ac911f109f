# Read by the scripts of this folder: the program under test, a directory of one's own, and checks that are counted.
# shellcheck shell=bash
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
program=$(realpath "${1:-$root/build/debug/bvctl}")
export ASAN_OPTIONS=detect_leaks=0 # LeakSanitizer cannot look below strace

work=$(mktemp -d)
clean_up() { rm -rf "$work"; }
trap clean_up EXIT
file=$work/SETUP.INI
temporary=$work/SETUP.TMP

checks=0          # in all
failed=0          # in all
failed_of_group=0 # since the last report

# check WHAT COMMAND...: counts a command that must succeed; what failed is said with what $where says.
check() {
    local what=$1
    shift
    checks=$((checks + 1))
    if ! "$@"; then
        failed=$((failed + 1))
        failed_of_group=$((failed_of_group + 1))
        echo "  $where: $what"
    fi
}

# report GROUP: one line for the checks since the last one.
report() {
    if [ "$failed_of_group" = 0 ]; then echo "ok     $1"; else echo "FAILED $1"; fi
    failed_of_group=0
}

finish() {
    echo "$checks checks, $failed failed"
    [ "$failed" = 0 ] && [ "$checks" -gt 0 ]
    exit
}

not() { ! "$@"; }
same() { cmp -s "$1" "$2"; }

# The last line of a standard error names the control file and what it is that failed.
has_message() { tail -n 1 "$1" | grep -Eq '^(Unable to open|Error updating) file .*SETUP\.INI$'; }
