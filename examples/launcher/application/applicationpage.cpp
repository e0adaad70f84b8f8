#include "application/applicationpage.h"

#include "application/errorpage.h"

#include <QUrl>
#include <QWebFrame>

namespace {

// Where a server said that all is well and then broke off, the engine gives what it said.
QString reasonOf(const QWebPage::ErrorPageExtensionOption &failure)
{
    const bool brokeOff = failure.domain == QWebPage::Http && failure.error < 400;
    return brokeOff ? QString(QLatin1String("the server broke off its answer"))
                    : failure.errorString;
}

} // namespace

ApplicationPage::ApplicationPage(QObject *parent)
    : QWebPage(parent), m_errorPageIsShown(false), m_consoleIsShown(true)
{
    connect(this, SIGNAL(loadStarted()), SLOT(forgetLoadError()));
}

ApplicationPage *ApplicationPage::make(QObject *parent)
{
    return new ApplicationPage(parent);
}

void ApplicationPage::setUserAgent(const QString &userAgent)
{
    m_userAgent = userAgent;
}

void ApplicationPage::setErrorPageIsShown(bool shown)
{
    m_errorPageIsShown = shown;
}

bool ApplicationPage::errorPageIsShown() const
{
    return m_errorPageIsShown;
}

void ApplicationPage::setConsoleIsShown(bool shown)
{
    m_consoleIsShown = shown;
}

void ApplicationPage::setDocumentScript(const char *name, const QString &source)
{
    m_documentScripts.insert(QByteArray(name), source);
}

void ApplicationPage::runDocumentScripts()
{
    const QList<QString> sources = m_documentScripts.values();
    for (int i = 0; i < sources.size(); ++i)
        mainFrame()->evaluateJavaScript(sources.at(i));
}

QString ApplicationPage::loadError() const
{
    return m_loadError;
}

void ApplicationPage::forgetLoadError()
{
    m_loadError.clear();
}

bool ApplicationPage::supportsExtension(Extension extension) const
{
    return extension == ErrorPageExtension || QWebPage::supportsExtension(extension);
}

// The engine asks for a page to show in place of one that failed, in inner frames as well.
bool ApplicationPage::extension(Extension extension, const ExtensionOption *option,
                                ExtensionReturn *output)
{
    if (extension != ErrorPageExtension)
        return QWebPage::extension(extension, option, output);
    const ErrorPageExtensionOption *failure = static_cast<const ErrorPageExtensionOption *>(option);
    if (failure->frame == mainFrame())
        m_loadError = reasonOf(*failure);
    if (!m_errorPageIsShown)
        return false;
    ErrorPageExtensionReturn *page = static_cast<ErrorPageExtensionReturn *>(output);
    page->baseUrl = failure->url;
    page->contentType = QLatin1String("text/html");
    page->encoding = QLatin1String("utf-8");
    page->content = ErrorPage::html(failure->url, reasonOf(*failure));
    return true;
}

QString ApplicationPage::userAgentForUrl(const QUrl &url) const
{
    return m_userAgent.isEmpty() ? QWebPage::userAgentForUrl(url) : m_userAgent;
}

void ApplicationPage::javaScriptConsoleMessage(const QString &message, int line,
                                               const QString &source)
{
    if (!m_consoleIsShown)
        return;
    if (source.isEmpty()) { // nor does the line mean anything then
        emit note(QLatin1String("console: ") + message);
        return;
    }
    const QString file = source.section(QLatin1Char('/'), -1);
    emit note(
        QString(QLatin1String("console: %1:%2: %3")).arg(file, QString::number(line), message));
}
