#ifndef APPLICATIONPAGE_H
#define APPLICATIONPAGE_H

#include <QWebPage>

/// A page that tells another user agent, and that hands its messages to the launcher.
class ApplicationPage : public QWebPage
{
    Q_OBJECT

public:
    explicit ApplicationPage(QObject *parent);

    /// Empty for the engine's own.
    void setUserAgent(const QString &userAgent);

    /// Why the last document did not load; empty when the engine does not say.
    QString loadError() const;

    bool supportsExtension(Extension extension) const override;
    bool extension(Extension extension, const ExtensionOption *option,
                   ExtensionReturn *output) override;

Q_SIGNALS:
    /// A script of the page wrote to its console, or failed.
    void consoleMessage(const QString &message);

protected:
    QString userAgentForUrl(const QUrl &url) const override;
    void javaScriptConsoleMessage(const QString &message, int line, const QString &source) override;

private:
    QString m_userAgent;
    QString m_loadError;
};

#endif // APPLICATIONPAGE_H
