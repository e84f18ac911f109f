#!/usr/bin/env python3
"""Holds the sources to the map: which file may include which, and what may be called where.

usage: check_includes.py [--self-test | ROOT]     (default: the tree that this script stands in)

Prints "file:line: message" for each violation and exits 1, or exits 0 silently. --self-test plants every kind of
violation in a tree of its own and expects it to be found, and lawful code and expects it to pass.
"""
import re
import sys
import tempfile
from fnmatch import fnmatch
from pathlib import Path

# The map: each folder with all that its files may include.
MAP = {}
for line in (Path(__file__).resolve().parents[1] / "src/map.txt").read_text().splitlines():
    if line and not line.startswith("#"):
        name, uses = line.split(":")
        MAP[name] = {name}.union(*(MAP[used] for used in uses.split()))
FACES = ("dialogs", "console")

# The dialog of the shell that may include the areas' dialogs, which it opens, and what it hands them of areas above.
MENU_DIALOG = "shell/menu_dlg.*"

# What the console may use of the two lowest floors, and where: arguments, printing, rehearsals, starting up, and the
# verbs about files as such. For the server's settings it has the areas' procedures; whatever else of these floors it
# used would be a rule that the dialogs do not have.
CONSOLE_FLOORS = ("platform", "ctlfile")
CONSOLE_USES = {
    "platform/ascii.h": "*",
    "platform/clock.h": "*",
    "platform/drives.h": "*",  # host paths among the arguments
    "platform/code_page.h": "output.* run_console.* text_streams.*",
    "platform/environment.h": "run_console.* standard_console.* user_settings.*",
    "platform/files.h": "run_console.*",
    "platform/overlay_files.h": "dry_run.* routing_command.*",
    "platform/processes.h": "dry_run.*",
    "platform/terminal.h": "standard_console.*",
    "ctlfile/csv_import.h": "csv_import.*",
    "ctlfile/digits.h": "secret_command.*",
    "ctlfile/entered_values.h": "assignments.*",
    "ctlfile/key_fields.h": "shown_values.* password_input.* file_command.*",
    "ctlfile/leftover.h": "run_console.*",
    "ctlfile/lines.h": "output.* dry_run.* file_command.* user_command.* table.* text_streams.*",
    "ctlfile/open_retry.h": "run_console.*",
    "ctlfile/paths.h": "run_console.*",
    "ctlfile/reader.h": "file_command.*",
    "ctlfile/reading.h": "file_command.* csv_import.*",
    "ctlfile/recovery.h": "recover_command.*",
    "ctlfile/rewriter.h": "file_command.*",
    "ctlfile/scramble.h": "secret_command.*",
    "ctlfile/utf8.h": "output.* text_streams.* csv_import.*",
}

# System headers and system macros, each with the only places of src/ for them.
WINDOWS_HEADERS = re.compile(
    r"(windows|windowsx|win(def|base|user|nt|gdi|reg|nls|ver|spool|sock2?)|comm(ctrl|dlg)|shellapi|shl(obj|wapi|guid)"
    r"|shobjidl|prsht|uxtheme|dlgs|richedit|htmlhelp|tapi|mapi|objbase|tchar|direct|io|share|process|conio)\.h")
WINDOWS_PLACES = ("platform/win32/*", "*_dlg.*", "main_setup.cpp")
POSIX_HEADERS = re.compile(r"(unistd|fcntl|dlfcn|dirent|pwd|grp|poll|pthread|spawn|termios|utime|langinfo|strings"
                           r"|libgen|fnmatch|glob|netdb|(sys|arpa|netinet|linux)/\w+)\.h")
POSIX_PLACES = ("platform/posix/*",)
SYSTEM_MACROS = re.compile(r"\b(_?_?WIN(32|64)(__)?|(__)?(linux|unix)(__)?|__(APPLE|CYGWIN|MINGW32|MINGW64)__)\b")
SYSTEM_MACRO_PLACES = ("platform/*",)

# Calls that are not told how long their target is: nowhere, tests included.
UNBOUNDED_CALL = re.compile(
    r"\b((str|stp|wcs|lstr|_mbs|_tcs)(cpy|cat)[AW]?|Str(Cpy|Cat)[AW]?|v?sprintf|wv?sprintf[AW]?|gets|v?[fs]?w?scanf)"
    r"\s*\(")

# Below the faces nothing prints and nothing ends the program.
PRINTS = re.compile(r"\b(cout|cerr|clog)\b|\b(v?f?w?printf|perror|f?puts|f?putc|putchar|print|println)\s*\(")
ENDS = re.compile(r"\b(exit|quick_exit|abort|terminate)\s*\(")

UNFINISHED = re.compile(r"\b(TO" r"DO|FIX" r"ME)\b")

INCLUDE = re.compile(r'\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
CONDITIONAL = re.compile(r"\s*#\s*(el)?if")
COMMENT = r"//[^\n]*|/\*.*?\*/"
LITERAL = (r'R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|"(?:\\.|[^"\\\n])*"'
           r"|(?<![0-9A-Fa-f])'(?:\\.|[^'\\\n])+'")  # no ' after a digit: 1'000'000
COMMENT_OR_LITERAL = re.compile(f"(?P<comment>{COMMENT})|{LITERAL}", re.DOTALL)


def fits(path, patterns):
    return any(fnmatch(path, pattern) for pattern in patterns)


def folder_of(path):
    return path.split("/")[0]


def is_program(path):
    return fits(path, ("main_*.cpp",))


def is_face(path):
    return is_program(path) or is_dialog(path) or folder_of(path) in FACES


def is_dialog(path):
    return fits(path, ("*_dlg.*",))


def blanked(match):
    """Spaces in place of the text, its line ends kept."""
    return re.sub(r"[^\n]", " ", match.group())


def without_comments(text):
    return COMMENT_OR_LITERAL.sub(lambda m: blanked(m) if m["comment"] is not None else m.group(), text)


def code_only(text):
    return COMMENT_OR_LITERAL.sub(blanked, text)


def includes_of(text):
    """(line number, header in quotes or None, header in angle brackets or None) for each include."""
    for number, line in enumerate(without_comments(text).splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, match[1], match[2]


def dialog_fault(path, header):
    """What speaks against the include of a dialog's header by another file, or None."""
    if not is_dialog(path):
        return "the two faces do not know each other" if is_face(path) else f"{header} stands on a higher floor"
    if folder_of(header) in ("dialogs", folder_of(path)) or fits(path, (MENU_DIALOG,)):
        return None
    return "only the menu may include an area's dialog"


def console_may_use(path, header):
    places = CONSOLE_USES.get(header, "").split()
    return folder_of(header) not in CONSOLE_FLOORS or fits(path, [f"console/{place}" for place in places])


def include_fault(path, header):
    """What speaks against the include of a file of src/ by another, or None."""
    system_side = re.match(r"platform/(win32|posix)/", header)
    if system_side and not path.startswith(system_side.group()):
        return f"{header} is the inside of platform/"
    if is_program(path):
        return None
    if is_dialog(header):
        return dialog_fault(path, header)
    user, used = folder_of(path), folder_of(header)
    if user == "console" and not console_may_use(path, header):
        return f"rules stand in the engine: the console may not use {header} here (CONSOLE_USES)"
    if used in MAP[user] or (fits(path, (MENU_DIALOG,)) and used in MAP["dialogs"]):
        return None
    folders = list(MAP)
    return f"{header} stands on a higher floor" if folders.index(used) > folders.index(user) else f"{user} may not use {used}"


def check_includes(path, text, files):
    for number, header, system_header in includes_of(text):
        if system_header:
            if WINDOWS_HEADERS.fullmatch(system_header.lower()) and not fits(path, WINDOWS_PLACES):
                yield number, f"<{system_header}> belongs in platform/win32/ and the dialogs"
            if POSIX_HEADERS.fullmatch(system_header) and not fits(path, POSIX_PLACES):
                yield number, f"<{system_header}> belongs in platform/posix/"
        elif header not in files:
            yield number, f'"{header}" is no file of src/ on the map (write its path from src/)'
        elif fault := include_fault(path, header):
            yield number, fault


def check_calls(path, text):
    prints_nothing = not is_face(path)
    for number, line in enumerate(code_only(text).splitlines(), 1):
        if prints_nothing and (match := PRINTS.search(line)):
            yield number, f"the engine prints nothing itself: {match.group()}"
        if prints_nothing and (match := ENDS.search(line)):
            yield number, f"the engine never ends the program: {match.group()}"
        if CONDITIONAL.match(line) and SYSTEM_MACROS.search(line) and not fits(path, SYSTEM_MACRO_PLACES):
            yield number, "only platform/ knows the operating system"


def check_everywhere(text):
    """The rules for every file, tests included."""
    for number, line in enumerate(code_only(text).splitlines(), 1):
        if match := UNBOUNDED_CALL.search(line):
            yield number, f"unbounded call: {match.group()}"
    for number, line in enumerate(text.splitlines(), 1):
        if match := UNFINISHED.search(line):
            yield number, f"unfinished: {match.group()}"


def circles(graph):
    """The last step of each circle among includes, as (file, line, header, the way round)."""
    done, trail = set(), []

    def walk(path):
        trail.append(path)
        for number, header in graph[path]:
            if header in trail:
                yield path, number, header, trail[trail.index(header):] + [header]
            elif header not in done:
                yield from walk(header)
        done.add(trail.pop())

    for path in sorted(graph):
        if path not in done:
            yield from walk(path)


def sources(root, *folders):
    for folder in folders:
        for path in sorted((root / folder).rglob("*")):
            if path.suffix in (".cpp", ".h", ".def", ".rc"):
                yield path.relative_to(root / folder).as_posix(), f"{folder}/", path.read_text(encoding="latin-1")


def violations(root):
    """Every violation below the root, as (file, line, message)."""
    everything = list(sources(root, "src", "tests", "bench"))
    for path, folder, text in everything:
        yield from ((folder + path, *found) for found in check_everywhere(text))

    files = {path: text for path, folder, text in everything if folder == "src/" and not path.endswith(".rc")}
    for path in [path for path in files if not is_program(path) and folder_of(path) not in MAP]:
        yield f"src/{path}", 1, "stands on no floor of the map"
        del files[path]
    for path, text in files.items():
        yield from ((f"src/{path}", *found) for found in check_includes(path, text, files))
        yield from ((f"src/{path}", *found) for found in check_calls(path, text))
    graph = {path: [(number, header) for number, header, _ in includes_of(text) if header in files]
             for path, text in files.items()}
    for path, number, header, way in circles(graph):
        yield f"src/{path}", number, f"a circle of includes: {' -> '.join(way)}"


# What --self-test plants: the files, and words that must be said about the first one (None: nothing is said).
PLANTS = (
    ({"src/ctlfile/planted.cpp": '#include "users/planted.h"', "src/users/planted.h": ""}, "higher floor"),
    ({"src/voice/format.h": '#include "ctlfile/planted.h"', "src/ctlfile/planted.h": ""}, "higher floor"),
    ({"src/platform/planted.h": '#include "voice/format.h"', "src/voice/format.h": ""}, "higher floor"),
    ({"src/shell/planted.cpp": '#include "lcr/planted.h"', "src/lcr/planted.h": ""}, "higher floor"),
    ({"src/users/planted.cpp": '#include "users/planted_dlg.h"', "src/users/planted_dlg.h": ""}, "higher floor"),
    ({"src/routing/planted.cpp": '#include "covlet/planted.h"', "src/covlet/planted.h": ""}, "may not use"),
    ({"src/mailgw/planted_dlg.cpp": '#include "dialling/planted.h"', "src/dialling/planted.h": ""}, "may not use"),
    ({"src/lcr/planted_dlg.cpp": '#include "dialogs/planted_dlg.h"', "src/dialogs/planted_dlg.h": ""}, None),
    ({"src/dialogs/planted_dlg.cpp": '#include "lcr/planted_dlg.h"', "src/lcr/planted_dlg.h": ""}, "only the menu"),
        ({"src/console/planted.cpp": '#include "lcr/planted_dlg.h"', "src/lcr/planted_dlg.h": ""}, "two faces"),
    ({"src/console/planted.cpp": '#include "ctlfile/rewriter.h"', "src/ctlfile/rewriter.h": ""}, "rules stand"),
    ({"src/console/planted.cpp": '#include "ctlfile/planted.h"', "src/ctlfile/planted.h": ""}, "rules stand"),
    ({"src/console/planted.h": '#include "platform/files.h"', "src/platform/files.h": ""}, "rules stand"),
    ({"src/console/file_command.cpp": '#include "ctlfile/rewriter.h"', "src/ctlfile/rewriter.h": ""}, None),
    ({"src/console/planted.cpp": '#include "users/planted.h"', "src/users/planted.h": ""}, None),
    ({"src/shell/planted.cpp": '#include "platform/win32/planted.h"', "src/platform/win32/planted.h": ""}, "inside"),
    ({"src/users/planted.cpp": '#include "planted.h"', "src/users/planted.h": ""}, "no file of src/"),
    ({"src/planted/planted.cpp": ""}, "no floor"),
    ({"src/lcr/planted_b.h": '#include "lcr/planted_a.h"', "src/lcr/planted_a.h": '#include "lcr/planted_b.h"'},
     "a circle"),
    ({"src/users/planted.cpp": "#include <windows.h>"}, "platform/win32/"),
    ({"src/console/planted.cpp": "# include <CommCtrl.h>"}, "platform/win32/"),
    ({"src/shell/planted.cpp": "#include <unistd.h>"}, "platform/posix/"),
    ({"src/main_planted.cpp": "#include <sys/stat.h>"}, "platform/posix/"),
    ({"src/platform/win32/planted.cpp": "#include <fcntl.h>"}, "platform/posix/"),
    ({"src/users/planted.cpp": "#ifdef _WIN32\n#endif"}, "operating system"),
    ({"src/console/planted.cpp": "#if 1\n#elif defined(__linux__)\n#endif"}, "operating system"),
    ({"src/lcr/planted_dlg.cpp": "void F(char* a) { lstrcpyA(a, b); }"}, "unbounded"),
    ({"tests/planted.cpp": 'void F(char* a) { std::sprintf(a, "%d", 1); }'}, "unbounded"),
    ({"src/platform/posix/planted.cpp": 'void F(char* a) { sscanf(b, "%s", a); }'}, "unbounded"),
    ({"src/ctlfile/planted.cpp": "void F() { std::cerr << 1; }"}, "prints nothing"),
    ({"src/platform/planted.cpp": 'void F() { printf("text"); }'}, "prints nothing"),
    ({"src/lcr/planted.cpp": "void F() { std::exit(1); }"}, "never ends"),
    ({"bench/planted.cpp": "// TO" "DO"}, "unfinished"),
    ({"src/resources/planted.rc": "// FIX" "ME"}, "unfinished"),
    ({"src/devices/planted.cpp": '#include "users/planted.h"', "src/users/planted.h": ""}, None),
    ({"src/shell/menu_dlg.cpp": '#include "lcr/planted_dlg.h"', "src/lcr/planted_dlg.h": ""}, None),
    ({"src/shell/menu_dlg.cpp": '#include "whereused/planted.h"', "src/whereused/planted.h": ""}, None),
    ({"src/main_setup.cpp": '#include <windows.h>\n#include "lcr/planted_dlg.h"', "src/lcr/planted_dlg.h": ""}, None),
    ({"src/platform/win32/planted.cpp": "#ifdef _WIN32\n#include <windows.h>\n#endif"}, None),
    ({"src/platform/posix/planted.cpp": "#include <sys/file.h>\nvoid F() { _exit(127); }"}, None),
    ({"src/console/planted.cpp": 'void F() { std::cout << "exit(1)"; }'}, None),
    ({"src/lcr/planted.cpp": '// strcpy(a, b) exit(1)\nauto a = "printf(" + R"(sprintf(")" + F(1\'000, \'"\');'}, None),
    ({"tests/planted.cpp": '#include <windows.h>\nvoid F() { printf("text"); }'}, None),
)


def self_test():
    """How many plants were not answered as they should be."""
    failures = 0
    for plants, words in PLANTS:
        with tempfile.TemporaryDirectory() as root:
            for path, text in plants.items():
                (Path(root) / path).parent.mkdir(parents=True, exist_ok=True)
                (Path(root) / path).write_text(text + "\n", encoding="latin-1")
            found = [f"{path}:{number}: {message}" for path, number, message in violations(Path(root))]
        first = next(iter(plants))
        if not (any(line.startswith(first) and words in line for line in found) if words else not found):
            failures += 1
            print(f"self-test: {first}: expected {words or 'nothing'}, found {found}")
    return failures


def main(arguments):
    if arguments == ["--self-test"]:
        return 1 if self_test() else 0
    found = list(violations(Path(arguments[0]) if arguments else Path(__file__).resolve().parents[1]))
    for path, number, message in found:
        print(f"{path}:{number}: {message}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
