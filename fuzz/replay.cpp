// SPDX-License-Identifier: MIT
// main() of a fuzz target without an engine: runs it once with each file that is named, or that is in a
// directory that is named. Whatever the target finds ends the process. A target without past crashes has no
// directory for them.

#include "fuzz/fuzztarget.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

static bool runFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s cannot be read\n", qPrintable(path));
        return false;
    }
    const QByteArray bytes = file.readAll();
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.constData()),
                           size_t(bytes.size()));
    return true;
}

// The number of files, -1 when one cannot be read.
static int runAll(const QString &path)
{
    if (QFileInfo(path).isFile())
        return runFile(path) ? 1 : -1;
    const QFileInfoList entries = QDir(path).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &entry : entries) {
        if (!runFile(entry.filePath()))
            return -1;
    }
    return int(entries.size());
}

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const int inPath = runAll(QFile::decodeName(argv[i]));
        if (inPath < 0)
            return 1;
        count += inPath;
    }
    std::fprintf(stderr, "%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
