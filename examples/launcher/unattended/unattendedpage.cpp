#include "unattended/unattendedpage.h"

UnattendedPage::UnattendedPage(QObject *parent) : QWebPage(parent), m_unattended(false) {}

void UnattendedPage::setUnattended(bool unattended)
{
    m_unattended = unattended;
}

bool UnattendedPage::shouldInterruptJavaScript()
{
    if (!m_unattended)
        return QWebPage::shouldInterruptJavaScript();
    emit note(QLatin1String("a script that did not come to an end was stopped"));
    return true;
}

void UnattendedPage::javaScriptAlert(QWebFrame *frame, const QString &message)
{
    if (m_unattended)
        emit note(QLatin1String("alert: ") + message);
    else
        QWebPage::javaScriptAlert(frame, message);
}

bool UnattendedPage::javaScriptConfirm(QWebFrame *frame, const QString &message)
{
    if (!m_unattended)
        return QWebPage::javaScriptConfirm(frame, message);
    emit note(QLatin1String("asks, and is told no: ") + message);
    return false;
}

bool UnattendedPage::javaScriptPrompt(QWebFrame *frame, const QString &message,
                                      const QString &offered, QString *answer)
{
    if (!m_unattended)
        return QWebPage::javaScriptPrompt(frame, message, offered, answer);
    emit note(QLatin1String("asks, and is told nothing: ") + message);
    return false;
}
