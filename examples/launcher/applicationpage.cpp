#include "examples/launcher/applicationpage.h"

#include <QUrl>

ApplicationPage::ApplicationPage(QObject *parent) : QWebPage(parent) {}

void ApplicationPage::setUserAgent(const QString &userAgent)
{
    m_userAgent = userAgent;
}

QString ApplicationPage::loadError() const
{
    return m_loadError;
}

bool ApplicationPage::supportsExtension(Extension extension) const
{
    return extension == ErrorPageExtension || QWebPage::supportsExtension(extension);
}

// The engine asks for a page to show in place of one that failed; there is none, but it says why.
bool ApplicationPage::extension(Extension extension, const ExtensionOption *option,
                                ExtensionReturn *output)
{
    if (extension != ErrorPageExtension)
        return QWebPage::extension(extension, option, output);
    m_loadError = static_cast<const ErrorPageExtensionOption *>(option)->errorString;
    return false;
}

QString ApplicationPage::userAgentForUrl(const QUrl &url) const
{
    return m_userAgent.isEmpty() ? QWebPage::userAgentForUrl(url) : m_userAgent;
}

void ApplicationPage::javaScriptConsoleMessage(const QString &message, int line,
                                               const QString &source)
{
    if (source.isEmpty()) { // nor does the line mean anything then
        emit consoleMessage(message);
        return;
    }
    const QString file = source.section(QLatin1Char('/'), -1);
    emit consoleMessage(
        QString(QLatin1String("%1:%2: %3")).arg(file, QString::number(line), message));
}
