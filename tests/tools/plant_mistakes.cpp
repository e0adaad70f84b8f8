// Writes the configurations with planted mistakes into a folder, for other readers to be measured by:
// NAME.json, and in expected.txt for each its file, its kind in words and the line of the mistake.
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

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    const QString folder = application.arguments().at(1) + QLatin1Char('/');
    const QByteArray clean = Mistakes::configurations().at(2);
    const QList<Mistakes::Kind> kinds = Mistakes::syntaxKinds() + Mistakes::meaningKinds();
    QByteArray expected;
    std::mt19937 engine(7);
    for (int i = 0; i < kinds.size(); ++i) {
        Mistakes::Planted file = { clean, kinds.at(i).rule, 0, true };
        if (!kinds.at(i).plant(&file, engine))
            continue;
        const QByteArray name = QByteArray::number(i).rightJustified(2, '0') + ".json";
        const int line = file.bytes.left(file.offset).count('\n') + 1;
        const bool isSyntax = i < Mistakes::syntaxKinds().size();
        expected += name + '\t' + (isSyntax ? "syntax" : "meaning") + '\t' + kinds.at(i).name + '\t'
            + QByteArray::number(line) + '\n';
        if (!write(folder + QString::fromLatin1(name), file.bytes))
            return 1;
    }
    return write(folder + QLatin1String("expected.txt"), expected) ? 0 : 1;
}
