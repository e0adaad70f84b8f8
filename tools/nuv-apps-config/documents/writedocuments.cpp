// SPDX-License-Identifier: MIT
// Writes the documents that are made from the tables into the source tree. Run it after a change of a
// table: cmake --build BUILD --target documents

#include "tools/nuv-apps-config/documents/documents.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <cstdio>

namespace {

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: nuv-apps-config-documents ROOT\n", stderr);
        return 2;
    }
    const QString root = application.arguments().at(1) + QLatin1Char('/');
    for (const GeneratedFile &file : generatedFiles()) {
        QFile target(root + QLatin1String(file.path));
        const QByteArray bytes = file.make(contentsOf(target.fileName()));
        if (!target.open(QIODevice::WriteOnly) || target.write(bytes) != bytes.size()) {
            std::fprintf(stderr, "%s cannot be written\n", qPrintable(target.fileName()));
            return 1;
        }
    }
    return 0;
}
