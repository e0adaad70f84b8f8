// SPDX-License-Identifier: MIT
#ifndef UNATTENDEDPAGE_H
#define UNATTENDEDPAGE_H

#include "application/applicationpage.h"

/// A page that waits for nobody: it answers its scripts' questions itself, and tells what they were.
class UnattendedPage : public ApplicationPage
{
    Q_OBJECT

public:
    explicit UnattendedPage(QObject *parent) : ApplicationPage(parent) {}

    static ApplicationPage *make(QObject *parent) { return new UnattendedPage(parent); }

    // None says override: in Qt 4 the first is no virtual function, and clang wants all or none.
    // NOLINTBEGIN(modernize-use-override)

public Q_SLOTS:
    /// Asked by the engine when a script has run for seconds. The engine finds it by its name.
    bool shouldInterruptJavaScript();

protected:
    void putAlert(QWebFrame *frame, const QString &message);
    bool putConfirm(QWebFrame *frame, const QString &message);
    bool putPrompt(QWebFrame *frame, const QString &message, const QString &offered,
                   QString *answer);
    // NOLINTEND(modernize-use-override)
};

#endif // UNATTENDEDPAGE_H
