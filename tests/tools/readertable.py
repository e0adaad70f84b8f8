# SPDX-License-Identifier: MIT
"""The table readers.tsv: what readers say about planted mistakes, and how a person judged it."""

import collections
import os

HERE = os.path.dirname(os.path.abspath(__file__))
PATH = os.path.join(HERE, "readers.tsv")

# Of a reader with many complaints nobody reads more.
COMPLAINTS_READ = 3

# A line of the table. A reader without a line is silent about the mistake. `lines` is where the mistake
# is, `named` the lines that the reader names (0: none), `cause` and `remedy` are yes, half or no.
Outcome = collections.namedtuple("Outcome", "group mistake lines reader named cause remedy words")


def read():
    """The versions of the readers, and all outcomes."""
    versions, outcomes = {}, []
    with open(PATH, encoding="ascii") as file:
        for line in file:
            cells = line.rstrip("\n").split("\t")
            if cells[0] == "version":
                versions[cells[1]] = cells[2]
            else:
                outcomes.append(Outcome(*cells))
    return versions, outcomes


def write(versions, outcomes):
    with open(PATH, "w", encoding="ascii") as file:
        for reader, version in versions.items():
            file.write("version\t%s\t%s\n" % (reader, version))
        for outcome in outcomes:
            file.write("\t".join(outcome) + "\n")


def is_line_right(outcome):
    first, last = map(int, outcome.lines.split("-"))
    return any(first <= int(line) <= last for line in outcome.named.split(","))
