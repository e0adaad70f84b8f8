# SPDX-License-Identifier: MIT
"""What the checks of the documents have in common: Markdown, as far as ours goes."""

import os
import re
import sys

# A document that is wrong in every way; see check-faults.
WRONG = "tests/documents/wrong.md"


def tree(root):
    """The paths of all files of the project, from its root: nothing hidden, nothing that was built,
    and not the inputs of the fuzzers, which are any bytes."""
    paths = []
    for folder, folders, files in os.walk(root):
        if folder == root:
            folders[:] = [name for name in folders if not name.startswith(("build", "dist-"))
                          and "CMakeCache.txt" not in os.listdir(os.path.join(root, name))]
        folders[:] = sorted(name for name in folders
                            if not name.startswith((".", "__")) and name != "corpus")
        paths += [os.path.relpath(os.path.join(folder, name), root) for name in sorted(files)]
    return paths


def read(root, path):
    with open(os.path.join(root, path), encoding="utf-8", errors="replace") as file:
        return file.read()


class Block:
    """A block of code: fenced, with what is after the fence, or indented, with None there."""

    def __init__(self, language, line):
        self.language = language
        self.line = line  # of its first line of code
        self.lines = []

    def text(self):
        return "".join(line + "\n" for line in self.lines)


class Document:
    """The blocks of a page, and what is left of its lines when they are blanked."""

    def __init__(self, root, path):
        self.path = path
        self.lines = read(root, path).split("\n")
        self.blocks = []
        self.prose = []
        block = None
        for number, line in enumerate(self.lines, 1):
            fence = re.match(r"\s*```(.*)", line)
            if fence and block and block.language is not None:
                block = None
            elif fence:
                block = self._open(fence.group(1).strip(), number + 1)
            elif block and block.language is not None:
                block.lines.append(line)
            elif re.match(r"    \S", line) and (block or self._after_blank()):
                block = block or self._open(None, number)
                block.lines.append(line[4:])
            else:
                block = None
                self.prose.append(line)
                continue
            self.prose.append("")

    def _open(self, language, line):
        self.blocks.append(Block(language, line))
        return self.blocks[-1]

    def _after_blank(self):
        """Whether an indented line begins a block here, and does not go on with a list."""
        before = next((line for line in reversed(self.prose) if line), "")
        return (not self.prose or not self.prose[-1]) and not re.match(r"\s*([-*]|\d+\.) ", before)

    def codes(self):
        """What is between backticks in the prose, with the numbers of the lines."""
        for number, line in enumerate(self.prose, 1):
            for code in re.findall(r"`([^`]+)`", line):
                yield number, code

    def anchors(self):
        """What can follow a # in a link to this page."""
        anchors = set()
        for line in self.prose:
            heading = re.match(r"#+ (.*)", line)
            if not heading:
                continue
            text = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading.group(1)).lower()
            base = re.sub(r"[^\w\- ]", "", text).strip().replace(" ", "-")
            count = 0
            anchor = base
            while anchor in anchors:
                count += 1
                anchor = "%s-%d" % (base, count)
            anchors.add(anchor)
        return anchors


class Check:
    """Collects faults. The arguments are those of the program: ROOT, others, then documents."""

    def __init__(self, others=0):
        self.root = sys.argv[1]
        self.arguments = sys.argv[2:2 + others]
        self.paths = tree(self.root)
        names = sys.argv[2 + others:]
        if not names:
            names = [path for path in self.paths if path.endswith(".md") and path != WRONG]
        self.documents = [Document(self.root, name) for name in names]
        self.faults = 0

    def fault(self, document, line, text):
        print("%s:%d: %s" % (document.path, line, text))
        self.faults += 1

    def finish(self, what, count):
        if not self.faults:
            print("%d %s in %d documents" % (count, what, len(self.documents)))
        if not count:
            print("nothing was checked")
        sys.exit(1 if self.faults or not count else 0)
