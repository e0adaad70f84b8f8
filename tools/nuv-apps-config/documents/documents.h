// SPDX-License-Identifier: MIT
#ifndef DOCUMENTS_H
#define DOCUMENTS_H

#include <QByteArray>
#include <QString>

#include <vector>

/// The files of the project that are made from the tables.
struct GeneratedFile {
    const char *path; ///< from the root of the project
    QByteArray (*make)(const QByteArray &present); ///< from what the file holds now
};

const std::vector<GeneratedFile> &generatedFiles();

#endif // DOCUMENTS_H
