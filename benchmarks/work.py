# SPDX-License-Identifier: MIT
"""What users do, measured: each once in a process of its own, ours and what could be there instead."""

import concurrent.futures
import os
import random
import re
import shutil
import statistics
import subprocess
import tempfile
import textwrap
import time

APPLICATIONS = (5, 20, 100, 1000)
STEPS = ("link", "open", "parse", "flatten", "settings", "answer")
LAUNCHERS = ("parts", "library", "format", "plain")
READING = ("ours", "qt", "rapidjson", "simdjson", "nlohmann", "ini")
CHANGING = ("ours", "qt", "rapidjson", "nlohmann", "ini")
ROUNDS = 25


def wanted():
    """Every piece of work: (program, arguments before the file, applications, arguments after it)."""
    pieces = []
    for number in APPLICATIONS:
        pieces += [("launch-parts", (step,), number, ()) for step in STEPS]
        pieces += [("launch-" + who, (step,), number, ()) for who in LAUNCHERS[1:]
                   for step in ("link", "answer")]
        pieces += [("use-settings", ("open",), number, (who,)) for who in READING]
        pieces += [("use-settings", ("change",), number, (who,)) for who in CHANGING]
    return pieces


def quartiles(values):
    low, middle, high = statistics.quantiles(values, n=4)
    return low, middle, high


class Work:
    """The programs of one build folder, their documents, and what was measured."""

    def __init__(self, benchmarks):
        self.programs = benchmarks.programs
        self.documents = benchmarks.documents
        for number in APPLICATIONS:
            benchmarks.make_document("applications-%d" % number)
            benchmarks.run("use-settings", "prepare", self.document(number))
            benchmarks.run("use-settings", "verify", self.document(number))
        self.instructions = self.count_all()
        self.heap = {piece: self.run(piece, preload=True)[1:] for piece in wanted()}
        self.times = self.time_all()

    def document(self, number):
        return self.documents / ("applications-%d" % number)

    def run_with(self, piece, action):
        """Calls action with the command line of a piece. What changes a file gets one of its own."""
        program, before, number, after = piece
        with tempfile.TemporaryDirectory() as folder:
            file = self.document(number)
            if before == ("change",):
                file = os.path.join(folder, "settings")
                for ending in ("", ".ini"):
                    shutil.copy(str(self.document(number)) + ending, file + ending)
            return action([str(self.programs / program), *before, str(file), *after])

    def run(self, piece, preload=False):
        """Nanoseconds, the heap's peak and what is left of it."""
        def spawn(command):
            environment = dict(os.environ, LC_ALL="C")
            if preload:
                environment["LD_PRELOAD"] = str(self.programs / "libheapcount.so")
            environment["NUV_STARTED"] = str(time.monotonic_ns())
            return subprocess.run(command, env=environment, stdout=subprocess.PIPE, check=True,
                                  close_fds=False).stdout
        return tuple(int(word) for word in self.run_with(piece, spawn).split())

    def count(self, piece):
        """Instructions: of a launch from the start of the process, else of the call alone."""
        collects = "yes" if piece[0].startswith("launch") else "no"

        def spawn(command):
            done = subprocess.run(
                ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
                 "--collect-atstart=" + collects, *command],
                env=dict(os.environ, LC_ALL="C", QT_HASH_SEED="0"), check=True,
                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
            return int(re.search(r"Collected : (\d+)", done.stderr).group(1))
        return self.run_with(piece, spawn)

    def count_all(self):
        longest_first = sorted(wanted(), key=lambda piece: -piece[2])
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            return dict(zip(longest_first, pool.map(self.count, longest_first)))

    def time_all(self):
        """Every piece once in each round, in another order each time."""
        times = {piece: [] for piece in wanted()}
        order = wanted()
        shuffled = random.Random(1)
        for _ in range(ROUNDS):
            shuffled.shuffle(order)
            for piece in order:
                times[piece].append(self.run(piece)[0])
        return times

    def raw(self):
        """Everything, for a file that is kept."""
        return [{"program": piece[0], "arguments": [*piece[1], *piece[3]], "applications": piece[2],
                 "instructions": self.instructions[piece], "peak": self.heap[piece][0],
                 "left": self.heap[piece][1], "nanoseconds": self.times[piece]}
                for piece in wanted()]

    def time_ratio(self, ours, other):
        """Round by round: the median, and what half of the rounds lie between."""
        ratios = [one / another for one, another in zip(self.times[ours], self.times[other])]
        return "%.2f (%.2f–%.2f)" % tuple(quartiles(ratios)[index] for index in (1, 0, 2))

    def instruction_ratio(self, ours, other):
        return "%.2f" % (self.instructions[ours] / self.instructions[other])

    def milliseconds(self, piece):
        return statistics.median(self.times[piece]) / 1e6


NAMES = {"ours": "ours", "qt": "QJsonDocument", "rapidjson": "RapidJSON", "simdjson": "simdjson",
         "nlohmann": "nlohmann", "ini": "INI"}


def launch(who, step, number):
    return "launch-" + who, (step,), number, ()


def use(action, who, number):
    return "use-settings", (action,), number, (who,)


def in_words(number):
    return "{:,}".format(number)


def launch_rows(work):
    """From the start of the process to the first answer."""
    for number in APPLICATIONS:
        ours = launch("parts", "answer", number)
        for what, ratio in (("instructions", work.instruction_ratio), ("time", work.time_ratio)):
            yield [in_words(number), what,
                   *(ratio(ours, launch(who, "answer", number)) for who in ("plain", "format"))]


def difference(values, step):
    index = STEPS.index(step)
    return values[step] - (values[STEPS[index - 1]] if index else 0)


def split_rows(work):
    """What each step adds: millions of instructions, and milliseconds."""
    for number in APPLICATIONS:
        counted = {step: work.instructions[launch("parts", step, number)] / 1e6 for step in STEPS}
        timed = {step: work.milliseconds(launch("parts", step, number)) for step in STEPS}
        plain = launch("plain", "answer", number)
        yield [in_words(number), "million instructions",
               *("%.2f" % difference(counted, step) for step in STEPS),
               "%.2f" % counted["answer"], "%.2f" % (work.instructions[plain] / 1e6)]
        yield [in_words(number), "milliseconds",
               *("%.2f" % difference(timed, step) for step in STEPS),
               "%.2f" % timed["answer"], "%.2f" % work.milliseconds(plain)]


def library_rows(work):
    for number in APPLICATIONS:
        yield [in_words(number),
               *("%.1f" % work.milliseconds(launch(who, step, number))
                 for who in ("parts", "library") for step in ("link", "answer"))]


def use_rows(work, action, everybody):
    for number in APPLICATIONS:
        ours = use(action, "ours", number)
        for what, ratio in (("instructions", work.instruction_ratio), ("time", work.time_ratio)):
            yield [in_words(number), what,
                   *(ratio(ours, use(action, who, number)) for who in everybody[1:])]


def heap_rows(work, number):
    def cell(piece):
        return "%s / %s" % tuple("{:,.0f}".format(bytes_ / 1024) for bytes_ in work.heap[piece])
    for who in READING:
        changes = who in CHANGING
        started = {"ours": "parts", "qt": "format"}.get(who)
        yield [NAMES[who],
               cell(launch(started, "answer", number)) if started else "",
               cell(use("open", who, number)), cell(use("change", who, number)) if changes else ""]
    yield ["a hash from a QJsonObject", cell(launch("plain", "answer", number)), "", ""]


def in_words(ratio, less, more):
    """As people say it: "1.6 times faster", "2.0 times more"."""
    return "%.1f times %s" % ((1 / ratio, less) if ratio < 1 else (ratio, more))


def headline(work):
    """The outcome for 100 applications, in words."""
    def line(what, ours, other, name):
        by_round = [one / another for one, another in zip(work.times[ours], work.times[other])]
        counted = work.instructions[ours] / work.instructions[other]
        return "- %s: %s instructions and %s than %s." % (
            what, in_words(counted, "fewer", "more"),
            in_words(statistics.median(by_round), "faster", "slower"), name)
    lines = [line(what, use(action, "ours", 100), use(action, "qt", 100),
                  "the same format around QJsonDocument")
             for action, what in (("open", "Opening a file through QSettings and asking for every value"),
                                  ("change", "Changing one value and writing the file"))]
    lines.append(line("From the start of a process to the first answer", launch("parts", "answer", 100),
                      launch("plain", "answer", 100), "a hash that is filled from a QJsonObject"))
    return "\n".join(textwrap.fill(line, 100, subsequent_indent="  ") for line in lines)


def tables(work, table):
    """The tables of the report by their names; `table` makes one of a head and rows."""
    reading = ["applications", "", *(NAMES[who] for who in READING[1:])]
    changing = ["applications", "", *(NAMES[who] for who in CHANGING[1:])]
    return {
        "launch": table(["applications", "", "a hash from a QJsonObject",
                         "our loader, a format around QJsonDocument"], launch_rows(work)),
        "launch-split": table(["applications", "", "linking", "opening", "parsing", "flattening",
                               "the toolkit's second map", "the loader's questions", "in all",
                               "a hash from a QJsonObject"], split_rows(work)),
        "launch-library": table(["applications", "parts: main()", "parts: first answer",
                                 "whole library: main()", "whole library: first answer"],
                                library_rows(work)),
        "open": table(reading, use_rows(work, "open", READING)),
        "change": table(changing, use_rows(work, "change", CHANGING)),
        "heap": table(["", "launch", "open", "change"], heap_rows(work, 100)),
    }
