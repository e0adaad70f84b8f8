#ifndef APPLICATIONPAGE_H
#define APPLICATIONPAGE_H

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QWebPage>

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

    /// A script for each document of the main frame, run before the document's own, in place of an
    /// earlier one of that name; an empty one is none.
    void setDocumentScript(const char *name, const QString &source);
    void runDocumentScripts();

    /// Why the last document did not load; empty when the engine does not say.
    QString loadError() const;

    bool supportsExtension(Extension extension) const override;
    bool extension(Extension extension, const ExtensionOption *option,
                   ExtensionReturn *output) override;

Q_SIGNALS:
    /// Something to be told about the page: a question, a message to its console.
    void note(const QString &text);

protected:
    QString userAgentForUrl(const QUrl &url) const override;
    void javaScriptConsoleMessage(const QString &message, int line, const QString &source) override;

private Q_SLOTS:
    void forgetLoadError();

private:
    QString m_userAgent;
    QMap<QByteArray, QString> m_documentScripts;
    QString m_loadError;
    bool m_errorPageIsShown;
    bool m_consoleIsShown;
};

#endif // APPLICATIONPAGE_H
