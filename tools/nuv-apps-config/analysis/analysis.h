// SPDX-License-Identifier: MIT
#ifndef ANALYSIS_H
#define ANALYSIS_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/reading/documentreader.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/rules/devicefiles.h"
#include "tools/nuv-apps-config/secrets/secrets.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

#include <QStringList>

#include <memory>

/// All that is known about one file.
struct Analysis {
    explicit Analysis(const SourceText &text) : source(text) {}

    SourceText source;
    Document document;
    Findings findings; ///< in the order of the text, without secrets
    std::unique_ptr<Secrets> secrets;

    /// What keeps the library's own loader from being run on the file without harm; empty: nothing.
    QString danger() const;

    /// Beyond this depth the flat keys of a document fill the memory.
    static const int DeepestFlattened = 5000;
};

/// `name` is what the file is called in the output, `files` is where the files are that it names. Of
/// the rules in `ignored` nothing is found.
std::unique_ptr<Analysis> analyse(const QString &name, const QByteArray &bytes,
                                  const DeviceFiles &files,
                                  const ProgressSink &progress = ProgressSink(),
                                  const QStringList &ignored = QStringList());

#endif // ANALYSIS_H
