// SPDX-License-Identifier: MIT
#include "unattended/unattendedpage.h"

bool UnattendedPage::shouldInterruptJavaScript()
{
    emit note(QLatin1String("a script that did not come to an end was stopped"));
    return true;
}

void UnattendedPage::putAlert(QWebFrame *, const QString &message)
{
    emit note(QLatin1String("alert: ") + message);
}

bool UnattendedPage::putConfirm(QWebFrame *, const QString &message)
{
    emit note(QLatin1String("asks, and is told no: ") + message);
    return false;
}

bool UnattendedPage::putPrompt(QWebFrame *, const QString &message, const QString &, QString *)
{
    emit note(QLatin1String("asks, and is told nothing: ") + message);
    return false;
}
