#!/usr/bin/env python3
"""Two programs at a time change one file of the server, and a third one reads it, again and again.

usage: races.py BVCTL [--pairs N] [--only NAME...] [--other BVCTL] [--server DIRECTORY [--server DIRECTORY]]

Every pair of verbs that write the same file is started at once. What ended with 0 must be in the file afterwards; the
file must always be there, and whole. Ends with 1 when a change was lost, the file gone or half of it read.

--pairs N    how many times each pair of verbs is started (20)
--only NAME  these races alone, by their names below
--other      the program of the second workstation, where it is another one; may be a whole command ("tools/winrun X")
--server     where the server's directory lies for the first, and for the second, workstation: two mounts of a share
"""
import argparse
import contextlib
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import threading

ROOT = pathlib.Path(__file__).resolve().parents[2]
DATABASE = "BRIVANE/B-DB"

# A race: the file, its last line of which a reader makes sure, and two verbs. A verb is its arguments, with a value that
# is different each time, and how the file then shows it.
RACES = {
    "two dialling": ("DIALLING.INI", "LOCATION",
                     (["dialling", "set", "DialAsLocal={n}"], r"^DialAsLocal: {n}\r$"),
                     (["dialling", "set", "Area={n}"], r"^Area: {n}\r$")),
    "dialling and file": ("DIALLING.INI", "LOCATION",
                          (["dialling", "set", "Area={n}"], r"^Area: {n}\r$"),
                          (["file", "set", "{file}", "DIALPROPERTIES", "Other", "{n}"], None)),
    "router and option": ("SETUP.INI", "OPTIONS",
                          (["router", "set", "LocalServerID=S{n}"], r"^LocalServerID: S{n}[\r,]"),
                          (["option", "set", "QUEUEMAN/SendRetryWait={n}"], r"^SendRetryWait: {n}\r$")),
    "router and file": ("SETUP.INI", "OPTIONS",
                        (["router", "set", "LocalServerID=S{n}"], r"^LocalServerID: S{n}[\r,]"),
                        (["file", "set", "{file}", "OPTIONS", "Other", "{n}"], r"^Other: {n}\r$")),
    "router and start-up": ("SETUP.INI", "OPTIONS",
                            (["router", "set", "LocalServerID=S{n}"], r"^LocalServerID: S{n}[\r,]"),
                            (["option", "list"], None)),
    "two options": ("SETUP.INI", "OPTIONS",
                    (["option", "set", "QUEUEMAN/SendRetryWait={n}"], r"^SendRetryWait: {n}\r$"),
                    (["option", "set", "QUEUEMAN/SendTries={n}"], r"^SendTries: {n}\r$")),
    "link and file": ("LINK.INI", "BRIVANE",
                      (["link", "set", "LEEDS", "Description=D{n}"], r"^RemoteServerID: LEEDS, \"D{n}\"\r$"),
                      (["file", "set", "{file}", "BRIVANE", "Other", "{n}"], None)),
    "two links": ("LINK.INI", "BRIVANE",
                  (["link", "set", "LEEDS", "Description=D{n}"], r"^RemoteServerID: LEEDS, \"D{n}\"\r$"),
                  (["link", "set", "MUNICH", "Description=D{n}"], r"^RemoteServerID: MUNICH, \"D{n}\"\r$")),
    "two rules": ("LCRRULES.INI", "BRIVANE",
                  (["lcr", "set", "1", "Description=D{n}"], r"^Description: D{n}\r$"),
                  (["lcr", "set", "2", "Description=E{n}"], r"^Description: E{n}\r$")),
    "rule and file": ("LCRRULES.INI", "BRIVANE",
                      (["lcr", "set", "1", "Description=D{n}"], r"^Description: D{n}\r$"),
                      (["file", "set", "{file}", "RULE", "Other", "{n}"], None)),
    "two keys": ("SETUP.INI", "OPTIONS",
                 (["file", "set", "{file}", "OPTIONS", "K{n}", "1"], r"^K{n}: 1\r$"),
                 (["file", "set", "{file}", "OPTIONS", "L{n}", "1"], r"^L{n}: 1\r$")),
    "two users": ("USERLIST.INI", "BRIVANE",
                  (["user", "add", "K{n}A"], r"^Name: K{n}A\r$"),
                  (["user", "add", "K{n}B"], r"^Name: K{n}B\r$")),
    "two countries": ("COUNTRY.INI", "COUNTRIES",
                      (["destination", "country", "set", "UK", "Description=D{n}"], r"UK, \"D{n}\""),
                      (["destination", "country", "set", "DE", "Description=E{n}"], r"DE, \"E{n}\"")),
}


class Race:
    def __init__(self, programs, servers, name):
        self.programs = programs
        self.servers = servers
        self.file, self.paragraph, *self.verbs = RACES[name]
        self.faults = []
        self.refused = [0, 0]
        self.done = threading.Event()

    def command(self, side, arguments, n):
        windows = f"F:\\{DATABASE}\\{self.file}".replace("/", "\\")
        values = [argument.replace("{n}", str(n)).replace("{file}", windows) for argument in arguments]
        return [*self.programs[side], "--drive", f"F:={self.servers[side]}", "--ini", "F:\\", "--yes", *values]

    def run(self, side, arguments, n):
        done = subprocess.run(self.command(side, arguments, n), capture_output=True, check=False)
        if done.returncode:
            self.refused[side] += 1
            self.notice = done.stderr.decode(errors="replace").strip()
        return done.returncode == 0

    def read(self):
        """The reader: the file is always there, and its paragraphs are complete."""
        whole = None
        while not self.done.is_set():
            shown = subprocess.run(self.command(0, ["file", "list", "{file}"], 0), capture_output=True, check=False)
            if shown.returncode:
                self.faults.append("a reader: " + shown.stderr.decode(errors="replace").strip())
            paragraphs = len(re.findall(rb"^\[", shown.stdout, re.MULTILINE))
            whole = paragraphs if whole is None else max(whole, paragraphs)
            if not shown.returncode and paragraphs < whole:
                self.faults.append("a reader saw a part of the file")

    def text(self):
        try:
            return (pathlib.Path(self.servers[0]) / DATABASE / self.file).read_bytes().decode("latin-1")
        except OSError as error:
            return self.faults.append(f"gone: {error}") or ""

    def pair(self, n):
        said = [None, None]

        def act(side):
            said[side] = self.run(side, self.verbs[side][0], n)

        threads = [threading.Thread(target=act, args=(side,)) for side in (0, 1)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        text = self.text()
        for side, (arguments, shown) in enumerate(self.verbs):
            if said[side] and shown and not re.search(shown.replace("{n}", str(n)), text, re.MULTILINE):
                self.faults.append(f"pair {n}: lost {' '.join(arguments)}")

    def go(self, pairs):
        reader = threading.Thread(target=self.read)
        reader.start()
        for n in range(1, pairs + 1):
            self.pair(n + 100)
        self.done.set()
        reader.join()


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("program")
    parser.add_argument("--pairs", type=int, default=20)
    parser.add_argument("--only", choices=RACES, nargs="+", default=list(RACES))
    parser.add_argument("--other")
    parser.add_argument("--server", action="append", default=[])
    options = parser.parse_args()
    programs = [shlex.split(options.program), shlex.split(options.other or options.program)]
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
            race = Race(programs, servers, name)
            race.go(options.pairs)
        print(f"{'FAILED' if race.faults else 'ok':6} {name}: {options.pairs} pairs, refused {race.refused}")
        if any(refused == options.pairs for refused in race.refused):
            race.faults.append("one of them was always refused: " + race.notice)
        for fault in race.faults[:5]:
            print("       " + fault)
        failed += bool(race.faults)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
