#!/usr/bin/env bash
# tests/faults/full_disk.sh [BVCTL]: a control file grows on a disk that is full, from a disk without a free page to one
# with room enough: the old text stays whole as long as the new one has no room, and then the new one is there. Ends
# with 77, skipped, where it may not mount a disk of its own.
# shellcheck disable=SC2317 # check calls functions by name
set -u
# shellcheck source=checks.bash
. "$(dirname "$0")/checks.bash"

# Pages of 4096 bytes: of the disk, of the file before, and those that its rewrite needs beside it, 6 for the temporary
# and 3 by which the file grows.
readonly page=4096 pages=16 pages_before=3 needed=9
disk=$work/disk
file=$disk/SETUP.INI
temporary=$disk/SETUP.TMP

mkdir "$disk"
if ! mount -t tmpfs -o size=$((page * pages)) none "$disk" 2>"$work/errors"; then
    echo "skipped: $(cat "$work/errors")"
    exit 77
fi
trap 'umount "$disk"; clean_up' EXIT

# Every line gets a CR, which doubles the length.
{ yes '' | head -n 11000 && printf '[A]\nk: 1\n'; } >"$work/before"

set_key() { "$program" file set "$file" A k longer </dev/null >"$work/output" 2>"$work/errors"; }

# Puts the old text on a disk with so many free pages beside it.
fill_disk() {
    rm -f "$disk"/*
    cp "$work/before" "$file"
    head -c $(((pages - pages_before - $1) * page)) /dev/zero >"$disk/OTHER"
    check "the disk is not as full as it should be" test "$(df --output=avail -B $page "$disk" | tail -n 1)" -eq "$1"
}

check_refusal() {
    check "success without room" not set_key
    check "no message" has_message "$work/errors"
    check "the old text is not whole" same "$file" "$work/before"
    check "a temporary is left" not test -e "$temporary"
}

check_success() {
    check "failure with room" set_key
    check "not the new text" same "$file" "$work/after"
    check "a temporary is left" not test -e "$temporary"
}

# The new text, made where there is room.
where="elsewhere"
cp "$work/before" "$work/SETUP.INI"
check "fails" "$program" file set "$work/SETUP.INI" A k longer 2>"$work/errors"
mv "$work/SETUP.INI" "$work/after"

for ((free = 0; free <= pages - pages_before; free++)); do
    where="$free free pages"
    fill_disk "$free"
    if [ "$free" -lt "$needed" ]; then check_refusal; else check_success; fi
done
report "a file grows on a full disk"

where="after the refusals"
fill_disk 0
check_refusal
rm "$disk/OTHER"
check_success
report "with room again it works"
finish
