#!/usr/bin/env python3
"""Counts the tests in result files.

usage: count_tests.py [FILE.xml...]

Takes what GoogleTest writes with --gtest_output=xml and CTest with --output-junit. Prints "PASSED FAILED SKIPPED"; disabled
tests count as skipped. A file that cannot be read counts as one failed test.
"""
import sys
import xml.etree.ElementTree as ElementTree


def outcome(case):
    if case.find("failure") is not None or case.find("error") is not None or case.get("status") == "fail":
        return "failed"
    if case.find("skipped") is not None or case.get("status") in ("notrun", "disabled"):
        return "skipped"
    return "passed"


def outcomes(path):
    try:
        return [outcome(case) for case in ElementTree.parse(path).iter("testcase")]
    except (OSError, ElementTree.ParseError):
        return ["failed"]


def main(paths):
    found = [result for path in paths for result in outcomes(path)]
    print(found.count("passed"), found.count("failed"), found.count("skipped"))


if __name__ == "__main__":
    main(sys.argv[1:])
