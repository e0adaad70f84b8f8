# SPDX-License-Identifier: MIT
"""Builds the benchmarks, makes their documents and counts instructions: what the scripts share."""

import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Against whom each action is counted.
FLOORS = {"read": "floor", "write": "floor", "flatten": "floor", "unflatten": "floor",
          "load": "handed-over"}

# What is compared with the committed figures: actions and documents.
CHECKED = [("read", document) for document in ("typical", "applications-100", "object-10000",
                                               "integers-10000", "strings", "escapes", "doubles",
                                               "long-strings")]
CHECKED += [("write", document) for document in ("typical", "integers-10000", "escapes")]
CHECKED += [(action, "applications-100") for action in ("flatten", "unflatten", "load")]

# The C library chooses its functions by the processor. With this, those that every one of them has.
ANY_PROCESSOR = "glibc.cpu.hwcaps=-AVX2,-AVX_Fast_Unaligned_Load"

# A ratio that moves by more than this is another one.
TOLERANCE = 0.01


def build(folder, *targets, sources=ROOT, options=()):
    """Configures and builds; what the compiler says is shown only when it fails."""
    subprocess.run(["cmake", "-S", sources, "-B", folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                    "-DNUV_BUILD_BENCHMARKS=ON", "-DNUV_BUILD_EXAMPLES=OFF", "-DBUILD_TESTING=OFF",
                    *options],
                   check=True, stdout=subprocess.DEVNULL)
    command = ["cmake", "--build", folder]
    if targets:
        command += ["--target", *targets]
    done = subprocess.run(command, stdout=subprocess.PIPE, text=True)
    if done.returncode:
        raise SystemExit(done.stdout)


class Benchmarks:
    """The programs of one build folder, and the documents next to them."""

    def __init__(self, folder, tunables=""):
        self.tunables = tunables
        self.programs = pathlib.Path(folder).resolve() / "benchmarks"
        self.documents = self.programs / "documents"
        shutil.rmtree(self.documents, ignore_errors=True)
        self.documents.mkdir()

    def run(self, program, *arguments):
        done = subprocess.run([self.programs / program, *arguments], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True)
        if done.returncode:
            raise SystemExit(done.stdout + done.stderr)
        return done.stdout

    def make_document(self, name):
        with open(self.documents / name, "wb") as file:
            subprocess.run([self.programs / "count", "print", name], check=True, stdout=file)

    def size(self, document):
        return (self.documents / document).stat().st_size

    def count(self, action, document, who):
        """The instructions of one call, and the units that it is to be divided by."""
        done = subprocess.run(
            ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
             "--collect-atstart=no", self.programs / "count", action, self.documents / document,
             who],
            env=dict(os.environ, LD_BIND_NOW="1", QT_HASH_SEED="0", GLIBC_TUNABLES=self.tunables),
            check=True,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        collected = re.search(r"Collected : (\d+)", done.stderr)
        return int(collected.group(1)), int(done.stdout)

    def count_all(self, wanted):
        """Counts every (action, document, who) of a list, as many at once as there are cores."""
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            counted = pool.map(lambda one: self.count(*one), wanted)
            return dict(zip(wanted, counted))


def checked_benchmarks(folder):
    """Those of a build folder, with all that CHECKED counts, for figures that hold on every processor."""
    benchmarks = Benchmarks(folder, ANY_PROCESSOR)
    for document in dict.fromkeys(document for _, document in CHECKED):
        benchmarks.make_document(document)
    return benchmarks
