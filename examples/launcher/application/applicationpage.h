// SPDX-License-Identifier: MIT
#ifndef APPLICATIONPAGE_H
#define APPLICATIONPAGE_H

#include "application/questionflood.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QUrl>
#include <QWebPage>

class ConfiguredAccess;

/// The page of an application, with a user agent, an error page and scripts of the launcher's.
class ApplicationPage : public QWebPage
{
    Q_OBJECT

public:
    explicit ApplicationPage(QObject *parent);

    /// Makes a page of this class, or of one that is derived from it.
    typedef ApplicationPage *(*Maker)(QObject *parent);
    static ApplicationPage *make(QObject *parent);

    /// Empty for the engine's own.
    void setUserAgent(const QString &userAgent);

    /// Whether a page of the launcher's takes the place of one that does not load.
    void setErrorPageIsShown(bool shown);
    bool errorPageIsShown() const;

    void setConsoleIsShown(bool shown);

    /// Whether scripts find openDatabase. Not so at first: the engine hands it out in any case, and
    /// then refuses every statement.
    void setDatabasesAreOffered(bool offered);
    bool databasesAreOffered() const;

    /// Whether the user may choose files for forms. Not so at first.
    void setFilesAreOffered(bool offered);

    /// A script for each document of the main frame, run before the document's own, instead of an
    /// earlier one of that name; an empty one is none.
    void setDocumentScript(const char *name, const QString &source);

    /// The same for the script of a file, whose name its errors tell.
    void setUserScript(const QString &fileName, const QString &source);
    void runDocumentScripts();

    /// Shows the error page, where it is to be shown, for an address that cannot be asked for.
    void showError(const QUrl &address, const QString &reason);

    /// Why the last document did not load; empty when the engine does not say.
    QString loadError() const;
    QUrl failedAddress() const; ///< of that document

    /// Whether the last document failed so that it may load another time.
    bool mayLoadLater() const;

    bool supportsExtension(Extension extension) const override;
    bool extension(Extension extension, const ExtensionOption *option,
                   ExtensionReturn *output) override;

Q_SIGNALS:
    /// The end of a load, as loadFinished() tells it, but an answer that was cut off has not loaded.
    void settled(bool ok);

    /// Something to be told about the page: a question, a message to its console.
    void note(const QString &text);

protected:
    QString chooseFile(QWebFrame *frame, const QString &suggested) override;
    QString userAgentForUrl(const QUrl &url) const override;
    void javaScriptConsoleMessage(const QString &message, int line, const QString &source) override;
    void javaScriptAlert(QWebFrame *frame, const QString &message) override;
    bool javaScriptConfirm(QWebFrame *frame, const QString &message) override;
    bool javaScriptPrompt(QWebFrame *frame, const QString &message, const QString &offered,
                          QString *answer) override;

    // How the question of a script reaches the user, and what the user answers.
    virtual void putAlert(QWebFrame *frame, const QString &message);
    virtual bool putConfirm(QWebFrame *frame, const QString &message);
    virtual bool putPrompt(QWebFrame *frame, const QString &message, const QString &offered,
                           QString *answer);

private Q_SLOTS:
    void forgetLoadError();
    void judge(bool ok);
    void watchFrame(QWebFrame *frame);
    void takeDatabasesAway();

private:
    const ConfiguredAccess *configuredAccess() const; ///< null where the platform has another
    QString whyNotTold(const ConfiguredAccess &access, bool ok) const;
    void evaluateIn(QWebFrame *frame, const QString &source);
    bool mayAsk();

    QString m_userAgent;
    QString m_userScriptFile; ///< the file's name, without its directory
    QMap<QByteArray, QString> m_documentScripts;
    QString m_loadError;
    QuestionFlood m_questions;
    QUrl m_failedAddress;
    int m_requestsBefore; ///< the load that goes on
    bool m_mayLoadLater;
    bool m_errorPageIsShown;
    bool m_errorPageComes; ///< from the engine's question for it until it is loaded
    bool m_consoleIsShown;
    bool m_databasesAreOffered;
    bool m_filesAreOffered;
};

#endif // APPLICATIONPAGE_H
