// SPDX-License-Identifier: MIT
#ifndef PAGESCRIPT_H
#define PAGESCRIPT_H

#include <QString>

class QWebFrame;

/// What a page answered to a script.
struct PageAnswer {
    bool ok; ///< false when the script failed
    QString text; ///< the answer as JSON, on one line; why the script failed
};

/// Evaluates `script` in the document of a frame. What JSON cannot express, such as a function, is
/// answered as the text that it converts to.
PageAnswer askPage(QWebFrame *frame, const QString &script);

#endif // PAGESCRIPT_H
