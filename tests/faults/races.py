#!/usr/bin/env python3
"""Two programs at a time change one file of the server, and a third one reads it, again and again.

usage: races.py PROGRAM [--loop] [--pairs N] [--only NAME...] [--other PROGRAM] [--server DIRECTORY]...

Every pair of verbs that write the same file is started at once. What ended with 0 must be in the file afterwards; the
file must always be there, and whole. Ends with 1 when a change was lost, the file gone or half of it read.

PROGRAM      bvctl, which is started for each verb; or, with --loop, tests/programs/verb_loop, which is started once
             for each of the three and is a hundred times as fast. May be a whole command ("wine X.exe")
--pairs N    how many times each pair of verbs is started (20)
--only NAME  these races alone, by their names below
--other      the program of the second workstation, where it is another one
--server     where the server's directory lies for the first, and for the second, workstation: two mounts of a share
--mapped     drive F: of the programs is that directory already, as Windows needs it
"""
import argparse
import collections
import contextlib
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
DATABASE = "BRIVANE/B-DB"

# Verbs: their arguments, with a value that is different each time, and the line by which the file then shows it. Where
# they reach into the same paragraph they change different keys of it, so that both have to be there afterwards.
ROUTER = (["router", "set", "LocalServerID=S{n}"], r"LocalServerID: S{n}(, .*)?")
ROUTER_TEXT = (["router", "set", "Description=D{n}"], r'LocalServerID: .*, "D{n}"')
OPTION = (["option", "set", "QUEUEMAN/SendRetryWait={n}"], r"SendRetryWait: {n}")
TRIES = (["option", "set", "QUEUEMAN/SendTries={n}"], r"SendTries: {n}")
DEVICE = (["device", "set", "MODEM-1", "Description=D{n}"], r"Description: D{n}")
DIALLING = (["dialling", "set", "Area={n}"], r"Area: {n}")
LOCAL = (["dialling", "set", "DialAsLocal={n}"], r"DialAsLocal: {n}")
LINK = (["link", "set", "LEEDS", "Description=D{n}"], r'RemoteServerID: LEEDS, "D{n}"')
OTHER_LINK = (["link", "set", "MUNICH", "Description=D{n}"], r'RemoteServerID: MUNICH, "D{n}"')
RULE = (["lcr", "set", "1", "Description=D{n}"], r"Description: D{n}")
OTHER_RULE = (["lcr", "set", "2", "Description=E{n}"], r"Description: E{n}")
COUNTRY = (["destination", "country", "set", "UK", "Description=D{n}"], r'44: UK, "D{n}".*')
OTHER_COUNTRY = (["destination", "country", "set", "DE", "Description=E{n}"], r'49: DE, "E{n}".*')
REGION = (["destination", "region", "set", "EU", "Description=D{n}"], r'Region: EU, "D{n}"')
OTHER_REGION = (["destination", "region", "set", "ALPS", "Description=E{n}"], r'Region: ALPS, "E{n}"')
AREA = (["destination", "area", "set", "UK", "LON", "Description=D{n}"], r'Area: LON, "D{n}"')
OTHER_AREA = (["destination", "area", "set", "UK", "MAN", "Description=E{n}"], r'Area: MAN, "E{n}"')
START_UP = (["option", "list"], None)


def in_place(paragraph, key, value):
    """The verb that changes a key of any file in place."""
    return ["file", "set", "{file}", paragraph, key, value], f"{key}: " + re.escape(value).replace(r"\{n\}", "{n}")


# A race: the file and two verbs.
RACES = {
    "two routers": ("SETUP.INI", ROUTER, ROUTER_TEXT),
    "router and option": ("SETUP.INI", ROUTER, OPTION),
    "router and device": ("SETUP.INI", ROUTER, DEVICE),
    "router and file": ("SETUP.INI", ROUTER, in_place("OPTIONS", "Other", "{n}")),
    "router and start-up": ("SETUP.INI", ROUTER, START_UP),
    "two options": ("SETUP.INI", OPTION, TRIES),
    "option and device": ("SETUP.INI", OPTION, DEVICE),
    "two keys": ("SETUP.INI", in_place("OPTIONS", "K{n}", "1"), in_place("OPTIONS", "L{n}", "1")),
    "two dialling": ("DIALLING.INI", LOCAL, DIALLING),
    "dialling and file": ("DIALLING.INI", DIALLING, in_place("LOCATION", "IntlAccess", "{n}")),
    "two links": ("LINK.INI", LINK, OTHER_LINK),
    "link and file": ("LINK.INI", LINK, in_place("LINK", "RemoteServerAddress", "\\\\ISAR\\FAX\\L{n}")),
    "two rules": ("LCRRULES.INI", RULE, OTHER_RULE),
    "rule and file": ("LCRRULES.INI", OTHER_RULE, in_place("RULE", "Description", "F{n}")),
    "two countries": ("COUNTRY.INI", COUNTRY, OTHER_COUNTRY),
    "country and file": ("COUNTRY.INI", COUNTRY, in_place("COUNTRIES", "33", 'FR, "F{n}", 1')),
    "two regions": ("REGION.INI", REGION, OTHER_REGION),
    "region and file": ("REGION.INI", REGION, in_place("REGIONS", "Other", "{n}")),
    "two areas": ("Area44.ini", AREA, OTHER_AREA),
    "area and file": ("Area44.ini", AREA, in_place("AREAS", "Other", "{n}")),
    "two routings": ("ROUTING.INI", (["routing", "add", "subaddr", "1{n}", "GRETA"], r"1{n}: GRETA"),
                     (["routing", "add", "subaddr", "2{n}", "GRETA"], r"2{n}: GRETA")),
    "two users": ("USERLIST.INI", (["user", "add", "K{n}A"], r"Name: K{n}A"), (["user", "add", "K{n}B"], r"Name: K{n}B")),
}


class Started:
    """A program that is started for each verb."""

    def __init__(self, program):
        self.program = program

    def begin(self, arguments):
        self.running = subprocess.Popen([*self.program, *arguments], stdin=subprocess.DEVNULL,
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def end(self):
        """The exit status, the length of the results, the last line of what was said."""
        results, notices = self.running.communicate()
        return self.running.returncode, len(results), (notices.splitlines() or [b""])[-1].decode(errors="replace")

    def close(self):
        pass


class Looping:
    """A program that does verb after verb."""

    def __init__(self, program):
        self.running = subprocess.Popen(program, stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def begin(self, arguments):
        self.running.stdin.write("\t".join(arguments).encode() + b"\n")
        self.running.stdin.flush()

    def end(self):
        status, length, notice = self.running.stdout.readline().decode(errors="replace").rstrip("\r\n").split("\t")
        return int(status), int(length), notice

    def close(self):
        self.running.stdin.close()
        self.running.wait()


class Race:
    def __init__(self, options, servers, name):
        self.servers = servers
        self.file, *self.verbs = RACES[name]
        self.faults = []
        self.refused = [0, 0]
        self.reads = 0
        self.notices = collections.Counter()  # of those that were refused
        self.done = threading.Event()
        kind = Looping if options.loop else Started
        self.places = [[] if options.mapped else ["--drive", f"F:={server}"] for server in servers]
        commands = [options.program, options.other or options.program, options.program]
        self.programs = [kind(shlex.split(command)) for command in commands]

    def begin(self, side, arguments, n):
        windows = f"F:\\{DATABASE}\\{self.file}".replace("/", "\\")
        values = [argument.replace("{n}", str(n)).replace("{file}", windows) for argument in arguments]
        self.programs[side].begin([*self.places[side % 2], "--ini", "F:\\", "--yes", *values])

    def end(self, side):
        status, _, notice = self.programs[side].end()
        if status:
            self.refused[side] += 1
            self.notices[notice or f"status {status}"] += 1
        return status == 0

    def read(self):
        """The reader: the file is always there, and none of its paragraphs goes, since none of these verbs takes one."""
        longest = 0
        while not self.done.is_set():
            self.begin(2, ["file", "list", "{file}"], 0)
            status, length, notice = self.programs[2].end()
            self.reads += 1
            if status:
                self.faults.append("a reader: " + notice)
            elif length < longest:
                self.faults.append("a reader saw a part of the file")
            longest = max(longest, length)

    def text(self):
        """What lies there, once and under its name in any case, when nobody is at work."""
        directory = pathlib.Path(self.servers[0]) / DATABASE
        found = list(directory.iterdir())
        for path in found:
            if path.name.startswith("rf") and path.suffix == ".tmp":
                path.unlink(missing_ok=True)  # left empty by Wine's ReplaceFile, each time a reader makes it fail
        files = [path for path in found if path.name.upper() == self.file.upper()]
        if len(files) != 1:
            self.faults.append(f"{len(files)} files of the name {self.file}")
        return files[0].read_bytes().decode("latin-1") if files else ""

    def pair(self, n):
        for side in (0, 1):
            self.begin(side, self.verbs[side][0], n)
        said = [self.end(side) for side in (0, 1)]
        text = self.text()
        for side, (arguments, shown) in enumerate(self.verbs):
            if said[side] and shown and not re.search(f"^{shown}\r$".replace("{n}", str(n)), text, re.MULTILINE):
                self.faults.append(f"pair {n}: lost {' '.join(arguments)}")

    def go(self, pairs):
        reader = threading.Thread(target=self.read)
        reader.start()
        for n in range(1, pairs + 1):
            self.pair(n + 100)
        self.done.set()
        reader.join()
        for program in self.programs:
            program.close()


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("program")
    parser.add_argument("--loop", action="store_true")
    parser.add_argument("--mapped", action="store_true")
    parser.add_argument("--pairs", type=int, default=20)
    parser.add_argument("--only", choices=RACES, nargs="+", default=list(RACES))
    parser.add_argument("--other")
    parser.add_argument("--server", action="append", default=[])
    options = parser.parse_args()
    failed = 0
    for name in options.only:
        with contextlib.ExitStack() as stack:
            servers = options.server * (3 - len(options.server)) if options.server else [""]
            if options.server:
                shutil.rmtree(f"{servers[0]}/BRIVANE", ignore_errors=True)
                shutil.copytree(ROOT / "samples/server", servers[0], dirs_exist_ok=True)
            else:
                place = stack.enter_context(tempfile.TemporaryDirectory())
                subprocess.run([ROOT / "tools/layout-demo", f"{place}/server"], check=True)
                servers = [f"{place}/server"] * 2
            race = Race(options, servers, name)
            start = time.monotonic()
            race.go(options.pairs)
            seconds = time.monotonic() - start
        if any(refused == options.pairs for refused in race.refused):
            race.faults.append("one of them was always refused")
        if not race.reads:
            race.faults.append("nobody has read the file")
        print(f"{'FAILED' if race.faults else 'ok':6} {name}: {options.pairs} pairs, refused {race.refused}, "
              f"{race.reads} reads, {seconds:.0f} s", flush=True)
        for notice, count in race.notices.most_common(5):
            print(f"       refused {count} times: {notice}", flush=True)
        for fault in race.faults[:5]:
            print("       " + fault, flush=True)
        failed += bool(race.faults)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
