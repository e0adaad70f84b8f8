// SPDX-License-Identifier: MIT
// Writes the configurations with planted mistakes into a folder, for other readers to be measured by:
// NAME.json, and in expected.txt for each its file, its group, its kind in words and its lines.
//
//     plant_mistakes FOLDER

#include "tests/tools/mistakes.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {

bool write(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

int lineOf(const QByteArray &bytes, int offset)
{
    return bytes.left(offset).count('\n') + 1;
}

bool isBlank(char byte)
{
    return QByteArray(" \n\t\r").contains(byte);
}

// FIRST-LAST. Where something is missing, that is from the token before it to the one after it, and
// for a missing member from where its object begins.
QByteArray lines(const Mistakes::Planted &file)
{
    int first = file.offset;
    int last = first;
    if (file.rule.startsWith("missing-")) {
        while (first > 0 && isBlank(file.bytes.at(first - 1)))
            --first;
        while (last < file.bytes.size() - 1 && isBlank(file.bytes.at(last)))
            ++last;
    }
    if (file.rule.startsWith("needs-"))
        first = file.bytes.lastIndexOf('{', first);
    return QByteArray::number(lineOf(file.bytes, first)) + '-'
        + QByteArray::number(lineOf(file.bytes, last));
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    const QString folder = application.arguments().at(1) + QLatin1Char('/');
    const QList<Mistakes::Kind> kinds = Mistakes::syntaxKinds() + Mistakes::meaningKinds();
    QByteArray expected;
    for (int i = 0; i < kinds.size(); ++i) {
        const Mistakes::Planted file = Mistakes::published(kinds.at(i));
        const QByteArray name = QByteArray::number(i).rightJustified(3, '0') + ".json";
        const bool isSyntax = i < Mistakes::syntaxKinds().size();
        expected += name + '\t' + (isSyntax ? "syntax" : "meaning") + '\t' + kinds.at(i).name + '\t'
            + lines(file) + '\n';
        if (!write(folder + QString::fromLatin1(name), file.bytes))
            return 1;
    }
    return write(folder + QLatin1String("expected.txt"), expected) ? 0 : 1;
}
