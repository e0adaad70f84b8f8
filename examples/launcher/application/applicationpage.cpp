// SPDX-License-Identifier: MIT
#include "application/applicationpage.h"

#include "application/errorpage.h"
#include "network/configuredaccess.h"

#include <QUrl>
#include <QWebFrame>

namespace {

const char answerBrokenOff[] = "the server broke off its answer";
const char requestBlocked[] = "Request blocked";

// Where a server said that all is well and then broke off, the engine gives what it said. The network
// access can know more.
QString reasonOf(const QWebPage::ErrorPageExtensionOption &failure, const ConfiguredAccess *access)
{
    const bool brokeOff = failure.domain == QWebPage::Http && failure.error < 400;
    const QString words = brokeOff ? QString(QLatin1String(answerBrokenOff)) : failure.errorString;
    return access ? access->reason(failure.url, words) : words;
}

// The engine does not tell the errors of one script of the launcher's from those of another. Only the
// user script begins this far down.
const int linesBeforeUserScript = 10000;

// Scripts of the launcher's have no name, which the engine tells in either of these words.
bool isUnnamed(const QString &source)
{
    return source.isEmpty() || source == QLatin1String("undefined");
}

// The file, or the host where the first page of a server has no other name.
QString nameIn(const QString &source)
{
    const bool isFirstPage = source.endsWith(QLatin1Char('/'));
    return source.section(QLatin1Char('/'), isFirstPage ? -2 : -1);
}

// Not where the server does not have the page or refuses it, nor where the engine cannot show what is there.
bool isTransient(const QWebPage::ErrorPageExtensionOption &failure)
{
    const bool isRefused =
        failure.domain == QWebPage::Http && failure.error >= 400 && failure.error < 500;
    return failure.domain != QWebPage::WebKit && !isRefused;
}

} // namespace

ApplicationPage::ApplicationPage(QObject *parent)
    : QWebPage(parent),
      m_requestsBefore(0),
      m_mayLoadLater(false),
      m_errorPageIsShown(false),
      m_errorPageComes(false),
      m_consoleIsShown(true),
      m_databasesAreOffered(false),
      m_filesAreOffered(false)
{
    connect(this, SIGNAL(loadStarted()), SLOT(forgetLoadError()));
    connect(this, SIGNAL(loadFinished(bool)), SLOT(judge(bool)));
    connect(this, SIGNAL(frameCreated(QWebFrame *)), SLOT(watchFrame(QWebFrame *)));
    watchFrame(mainFrame());
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

void ApplicationPage::setDatabasesAreOffered(bool offered)
{
    m_databasesAreOffered = offered;
}

bool ApplicationPage::databasesAreOffered() const
{
    return m_databasesAreOffered;
}

void ApplicationPage::setFilesAreOffered(bool offered)
{
    m_filesAreOffered = offered;
}

void ApplicationPage::setDocumentScript(const char *name, const QString &source)
{
    m_documentScripts.insert(QByteArray(name), source);
}

void ApplicationPage::setUserScript(const QString &fileName, const QString &source)
{
    m_userScriptFile = fileName.section(QLatin1Char('/'), -1);
    setDocumentScript("user script", QString(linesBeforeUserScript, QLatin1Char('\n')) + source);
}

void ApplicationPage::runDocumentScripts()
{
    const QList<QString> sources = m_documentScripts.values();
    for (int i = 0; i < sources.size(); ++i)
        evaluateIn(mainFrame(), sources.at(i));
}

// The toolkit copies what a script comes to, with all that it can reach, so it comes to nothing.
void ApplicationPage::evaluateIn(QWebFrame *frame, const QString &source)
{
    frame->evaluateJavaScript(source + QLatin1String("\n;undefined"));
}

// From its first evaluation on, a frame announces the window object of each document once, even of one
// without scripts.
void ApplicationPage::watchFrame(QWebFrame *frame)
{
    evaluateIn(frame, QString());
    connect(frame, SIGNAL(javaScriptWindowObjectCleared()), SLOT(takeDatabasesAway()));
}

void ApplicationPage::takeDatabasesAway()
{
    QWebFrame *frame = qobject_cast<QWebFrame *>(sender());
    if (!m_databasesAreOffered)
        evaluateIn(frame,
                   QLatin1String("Object.defineProperty(window, 'openDatabase', "
                                 "{ value: undefined })"));
}

// The engine is about to say that it loads the error page, which is not to make it forget.
void ApplicationPage::showError(const QUrl &address, const QString &reason)
{
    if (m_errorPageIsShown)
        mainFrame()->setContent(ErrorPage::html(address, reason), QLatin1String("text/html"));
    m_loadError = reason;
}

QUrl ApplicationPage::failedAddress() const
{
    return m_failedAddress;
}

QString ApplicationPage::loadError() const
{
    return m_loadError;
}

bool ApplicationPage::mayLoadLater() const
{
    return m_mayLoadLater;
}

// The engine of Qt 4 takes the error page for one more page.
void ApplicationPage::forgetLoadError()
{
    if (m_errorPageComes)
        return;
    m_loadError.clear();
    m_mayLoadLater = false;
    if (const ConfiguredAccess *access = configuredAccess())
        m_requestsBefore = access->requestCount();
}

const ConfiguredAccess *ApplicationPage::configuredAccess() const
{
    return qobject_cast<ConfiguredAccess *>(networkAccessManager());
}

// The reason of an end that the engine does not tell: that of Qt 4 takes an answer that was cut off for a
// whole one, and asks for no error page where redirections have no end or a port is none of the web.
QString ApplicationPage::whyNotTold(const ConfiguredAccess &access, bool ok) const
{
    if (ok)
        return QLatin1String(access.isCutOff(mainFrame()->url()) ? answerBrokenOff : "");
    if (!m_loadError.isEmpty())
        return QString();
    if (access.isSentOn())
        return QLatin1String("Redirection limit reached");
    return QLatin1String(access.requestCount() == m_requestsBefore ? requestBlocked : "");
}

void ApplicationPage::judge(bool ok)
{
    if (m_errorPageComes) {
        m_errorPageComes = false;
        emit settled(false);
        return;
    }
    const ConfiguredAccess *access = configuredAccess();
    const QString reason = access ? whyNotTold(*access, ok) : QString();
    if (!reason.isEmpty()) {
        m_loadError = reason;
        m_failedAddress = mainFrame()->requestedUrl();
        m_mayLoadLater = reason != QLatin1String(requestBlocked);
    }
    emit settled(ok && reason.isEmpty());
}

// The other one is the choice of several files.
bool ApplicationPage::supportsExtension(Extension extension) const
{
    return extension == ErrorPageExtension || m_filesAreOffered;
}

// The engine asks for a page to show instead of one that failed, in inner frames as well.
bool ApplicationPage::extension(Extension extension, const ExtensionOption *option,
                                ExtensionReturn *output)
{
    if (extension != ErrorPageExtension)
        return QWebPage::extension(extension, option, output);
    const ErrorPageExtensionOption *failure = static_cast<const ErrorPageExtensionOption *>(option);
    const QString reason = reasonOf(*failure, configuredAccess());
    if (failure->frame == mainFrame()) {
        m_loadError = reason;
        m_failedAddress = failure->url;
        m_mayLoadLater = isTransient(*failure);
    }
    if (!m_errorPageIsShown)
        return false;
    m_errorPageComes = failure->frame == mainFrame();
    ErrorPageExtensionReturn *page = static_cast<ErrorPageExtensionReturn *>(output);
    page->baseUrl = failure->url;
    page->contentType = QLatin1String("text/html");
    page->encoding = QLatin1String("utf-8");
    page->content = ErrorPage::html(failure->url, reason);
    return true;
}

QString ApplicationPage::chooseFile(QWebFrame *frame, const QString &suggested)
{
    return m_filesAreOffered ? QWebPage::chooseFile(frame, suggested) : QString();
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
    const bool isOfUserScript = isUnnamed(source) && line > linesBeforeUserScript;
    if (isUnnamed(source) && !isOfUserScript) { // nor does the line mean anything then
        emit note(QLatin1String("console: ") + message);
        return;
    }
    const QString file = isOfUserScript ? m_userScriptFile : nameIn(source);
    const int lineInFile = isOfUserScript ? line - linesBeforeUserScript : line;
    emit note(QString(QLatin1String("console: %1:%2: %3"))
                  .arg(file, QString::number(lineInFile), message));
}

// A page that asks without end would never leave its user, or the log, alone.
bool ApplicationPage::mayAsk()
{
    const int number = m_questions.next();
    if (number <= QuestionFlood::Most)
        return true;
    m_questions.answered();
    if (number == QuestionFlood::Most + 1)
        emit note(QLatin1String("asks without end; what follows is answered with no"));
    return false;
}

void ApplicationPage::javaScriptAlert(QWebFrame *frame, const QString &message)
{
    if (!mayAsk())
        return;
    putAlert(frame, message);
    m_questions.answered();
}

bool ApplicationPage::javaScriptConfirm(QWebFrame *frame, const QString &message)
{
    if (!mayAsk())
        return false;
    const bool yes = putConfirm(frame, message);
    m_questions.answered();
    return yes;
}

bool ApplicationPage::javaScriptPrompt(QWebFrame *frame, const QString &message,
                                       const QString &offered, QString *answer)
{
    if (!mayAsk())
        return false;
    const bool given = putPrompt(frame, message, offered, answer);
    m_questions.answered();
    return given;
}

void ApplicationPage::putAlert(QWebFrame *frame, const QString &message)
{
    QWebPage::javaScriptAlert(frame, message);
}

bool ApplicationPage::putConfirm(QWebFrame *frame, const QString &message)
{
    return QWebPage::javaScriptConfirm(frame, message);
}

bool ApplicationPage::putPrompt(QWebFrame *frame, const QString &message, const QString &offered,
                                QString *answer)
{
    return QWebPage::javaScriptPrompt(frame, message, offered, answer);
}
