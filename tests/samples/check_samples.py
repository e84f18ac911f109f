#!/usr/bin/env python3
"""Checks the demo server: file forms, order of records, references between files, directories.

usage: check_samples.py [SERVER]. Prints one line per problem and exits 1, or "samples: ok" and exits 0.
It has a small model of the control files of its own, so that it shares no fault with the programs.
"""
import re
import sys
from collections import defaultdict
from pathlib import Path

ROOT = Path(sys.argv[1] if len(sys.argv) > 1 else Path(__file__).resolve().parents[2] / "samples" / "server")
BASE = ROOT / "BRIVANE"
DB = BASE / "B-DB"
# The type word of each headed file, by the file's name or, for message directories, its directory's.
TYPES = {"ROUTING.INI": "RoutingInit", "COUNTRY.INI": "Country", "REGION.INI": "Region", "LCRRULES.INI": "LCRRules",
         "LINK.INI": "LinkDatabase", "DIALLING.INI": "DiallingProperties", "Area44.ini": "Area", "Area49.ini": "Area",
         "B-IN": "ReceiveDir", "B-OUT": "SendDir"}
USER_WORK = ("B-OUT/PREVIEW", "B-OUT/G3N", "B-OUT/G3F", "B-OUT/G3S", "B-GRAPH")
EOL_CODE = "000000000001"  # begins each row of a Group 3 page; six in a row end the page
problems = []


def expect(condition, where, text):
    if not condition:
        problems.append(f"{where}: {text}")


def expect_known(names, known, where):
    for name in names:
        expect(name in known, where, f"{name} does not exist")


def lines_of(path):
    expect(path.is_file(), path.relative_to(ROOT), "missing")
    return path.read_bytes().decode("cp1252").split("\r\n") if path.is_file() else []


def paragraphs(path):
    """The file's paragraphs as (header, key -> values); comments and indented lines left out."""
    found = []
    for line in lines_of(path):
        if line.startswith("["):
            found.append((line, defaultdict(list)))
        elif found and line and line[0] not in " ;":
            key, text = re.match(r"([^:=]*)[:=]?(.*)", line).groups()
            found[-1][1][key].append(text.strip())
    return found


def every(path, header):
    return [lines for name, lines in paragraphs(path) if name == header]


def only(path, header):
    found = every(path, header)
    expect(len(found) == 1, path.name, f"{header} stands there {len(found)} times")
    return found[0] if found else defaultdict(list)


def first(lines, key):
    return next(iter(lines[key]), "")


def words(lines):
    return [re.match(r"[^\s,]*", line).group() for line in lines]  # the first word names the entry


def check_form(path):
    """CR LF everywhere, no line that a reader would cut, one byte for each national character, the header."""
    where, data = path.relative_to(ROOT), path.read_bytes()
    expect(data.endswith(b"\r\n"), where, "does not end in CR LF")
    for number, line in enumerate(data.split(b"\r\n"), 1):
        fault = len(line) > 280 or re.search(rb"[\x00-\x08\x0a-\x1f\x7f]|[\xc2\xc3][\x80-\xbf]", line)
        expect(not fault, where, f"line {number} is too long, holds a control character or is UTF-8")
    kind = TYPES.get(path.name) or TYPES.get(path.parent.name)
    expect(not kind or lines_of(path)[:3] == ["[BRIVANE]", f"Type: {kind}", "Revision: A"], where, f"no {kind} header")


def user_list(header):
    """The records of one kind by name; names at most 8 long, in byte order, the default record first."""
    records = [(first(lines, "Name"), lines) for lines in every(DB / "USERLIST.INI", header)]
    names = [name for name, _ in records]
    expect(names[:1] == ["(default)"] and names == sorted(set(names)), "USERLIST.INI", f"{header} records out of order")
    expect(all(len(name) <= 8 for name in names[1:]), "USERLIST.INI", f"a {header} name is too long")
    return dict(records[1:])


def check_tree(name, lines, is_user):
    home, where = BASE / "USERS" / name, f"USERS/{name}"
    for box in ("B-IN", "B-OUT")[:1 + is_user]:
        lines_of(home / box / "MSGDIR.CTL")
    sender = "" if first(lines, "MailName")[:1] in ("(", "*") else first(lines, "Fullname")
    made = [f"From: {sender}" if line == "From:" else line for line in lines_of(DB / "USER.INI") if line]
    options = [line for line in lines_of(home / "B-DB" / "USER.INI") if line]
    expect(options == made, where, "USER.INI is not the template with the sender's name")
    for path in USER_WORK if is_user else ():
        expect((home / path).is_dir(), where, f"{path} is missing")


def check_setup(people):
    setup = DB / "SETUP.INI"
    devices = words(only(setup, "[DEVICES]")["Device"])
    printers = words(only(setup, "[PRINTERS]")["Device"])
    expect_known(printers, devices, "[DEVICES]")
    for lines in (only(setup, f"[{name}]") for name in devices if name != "NETWORK"):
        expect_known(lines["RecdUser"], people, first(lines, "Description"))
        expect_known([first(lines, "Type")], ("FCLASS", "GAMMA", "BTROUT", "PRINT"), first(lines, "Description"))
    expect_known(only(setup, "[BSUBMIT]")["User"] + only(setup, "[HPSCAN]")["User"], people, "SETUP.INI")
    for header, lines in paragraphs(setup) + paragraphs(DB / "USERLIST.INI"):
        for key in filter(re.compile(r"Print(Sent|Recd)Device2?").fullmatch, lines):
            expect_known(lines[key], printers + [""], f"{header} {key}")


def check_routing(people):
    path = DB / "ROUTING.INI"
    rules = [(key, *targets) for key, targets in only(path, "[SENDERID]").items() if key[0] != "@"]
    rules += only(path, "[SUBADDR]").values()
    rules += [(key, *re.findall(r'LAN-ANY "(.*)"', lines[0])) for key, lines in only(path, "[FORWARD]").items()]
    names = [name.removeprefix("\\") for rule in rules for name in rule]
    expect_known((name for name in names if not name.startswith("(")), people, path.name)


def check_lcr(users):
    places = []  # by country identifier and by dialling code: either form may be written
    for code, lines in only(DB / "COUNTRY.INI", "[COUNTRIES]").items():
        area_file = DB / f"Area{code}.ini"
        areas = words(only(area_file, "[AREAS]")["Area"]) if area_file.exists() else []
        for country in (code, *words(lines)):
            places += [country] + [f"{country}/{area}" for area in areas]
    regions = only(DB / "REGION.INI", "[REGIONS]")
    expect_known(regions["Match"], places, "REGION.INI")
    links = every(DB / "LINK.INI", "[LINK]")
    servers = ["*", *words(first(link, "RemoteServerID") for link in links)]
    expect_known((name for link in links for name in link["BrivaneAccountName"]), users, "LINK.INI")
    known = {"Region": words(regions["Region"]), "Country": places, "Area": places, "User": users, "Server": servers}
    for rule in every(DB / "LCRRULES.INI", "[RULE]"):
        for key, names in known.items():
            expect_known(rule[key], names, f"rule '{first(rule, 'Description')}'")


def check_mail(users):
    records = every(DB / "MAILLIST.INI", "[USER]")
    names = [first(lines, "Emailname") for lines in records]
    expect(names == sorted(names), "MAILLIST.INI", "not in order of the mail names")
    expect_known(names, [line.split("\t")[0] for line in lines_of(DB / "MAILUSER.DAT")], "MAILUSER.DAT")
    for lines, name in zip(records, names):
        owner = first(lines, "Brivname")
        expect_known([owner] + [user for user in lines["EmailBrivname"] if user[0] != "("], users, "MAILLIST.INI")
        profile = "YES" if owner in users and first(users[owner], "MailName").startswith("*") else "NO"
        expect(first(lines, "Profile") == profile, "MAILLIST.INI", f"Profile of {name} is not {profile}")


def check_catalogue(folder, kinds, installable):
    lines = only(folder / "MSGDIR.CTL", "[DIRECTORY]")["File"]
    names = words(lines)
    written = all(re.fullmatch(r'.{8} "[^"]{1,50}"', line) for line in lines)
    expect(written and names == sorted(names), folder.name, "catalogue is not in order or not in the written form")
    for name in names:
        expect(any((folder / (name + kind)).is_file() for kind in kinds), folder.name, f"{name} has no graphics file")
    expect({page.stem for page in folder.glob(installable)} - set(names), folder.name, "nothing is left to install")
    for page in folder.glob("*.G3?"):
        bits = "".join(f"{byte:08b}" for byte in page.read_bytes())
        expect(bits.startswith(EOL_CODE) and bits.rstrip("0").endswith(6 * EOL_CODE), page.name, "no Group 3 page")


def check_directories():
    """Directories named in the files exist; KEEP is empty and keeps one that holds nothing else."""
    there = [path.relative_to(ROOT).as_posix() for path in ROOT.rglob("*")]
    for keep in ROOT.rglob("KEEP"):
        expect(not keep.stat().st_size and len(list(keep.parent.iterdir())) == 1, keep.parent.name, "needs no KEEP")
    for header, lines in paragraphs(ROOT / "BRIVANE.INI") + paragraphs(DB / "SETUP.INI"):
        named = [text for texts in lines.values() for text in texts if text.startswith("F:\\")]
        expect_known((text[3:].rstrip("\\").replace("\\", "/") for text in named), there, header)


def main():
    for path in (path for path in ROOT.rglob("*") if path.suffix.upper() in (".INI", ".CTL", ".DAT")):
        check_form(path)
    users, groups = user_list("[USER]"), user_list("[GROUP]")
    for name, lines in (users | groups).items():
        expect_known(lines["Group"], groups, "USERLIST.INI")
        check_tree(name, lines, name in users)
    check_setup(users | groups)
    check_routing(users | groups)
    check_lcr(users)
    check_mail(users)
    locations = [first(lines, "Description") for lines in every(DB / "DIALLING.INI", "[LOCATION]")]
    expect_known(only(DB / "DIALLING.INI", "[DIALPROPERTIES]")["Location"], locations, "DIALLING.INI")
    check_catalogue(BASE / "B-COVER", (".G3N", ".G3F", ".EPN"), "*.EPN")
    check_catalogue(BASE / "B-LETTER", (".G3N", ".G3F"), "*.G3[NF]")
    check_directories()
    print("\n".join(problems) or "samples: ok")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
