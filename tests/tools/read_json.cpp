// SPDX-License-Identifier: MIT
// Reads a file with Qt's own JSON reader, and says on which line it gives up.
//
//     read_json FILE

#include <QFile>
#include <QJsonDocument>

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc == 2 && qstrcmp(argv[1], "--version") == 0)
        return std::printf("%s\n", qVersion()) < 0;
    QFile file(argc == 2 ? QFile::decodeName(argv[1]) : QString());
    if (!file.open(QIODevice::ReadOnly))
        return 2;
    const QByteArray bytes = file.readAll();
    QJsonParseError error;
    QJsonDocument::fromJson(bytes, &error);
    if (error.error == QJsonParseError::NoError)
        return 0;
    std::printf("line %d: %s\n", bytes.left(error.offset).count('\n') + 1,
                qPrintable(error.errorString()));
    return 1;
}
