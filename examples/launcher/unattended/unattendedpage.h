#ifndef UNATTENDEDPAGE_H
#define UNATTENDEDPAGE_H

#include <QWebPage>

/// A page that waits for nobody when it is told that nobody is there: it answers its scripts' questions
/// itself, and tells what they were.
class UnattendedPage : public QWebPage
{
    Q_OBJECT

public:
    explicit UnattendedPage(QObject *parent);

    /// Not so at first: then the toolkit asks the user.
    void setUnattended(bool unattended);

    // None says override: in Qt 4 the first is no virtual function, and clang wants all or none.
    // NOLINTBEGIN(modernize-use-override)

public Q_SLOTS:
    /// Asked by the engine when a script has run for seconds. The engine finds it by its name.
    bool shouldInterruptJavaScript();

Q_SIGNALS:
    /// Something to be told about the page: a question, a message to its console.
    void note(const QString &text);

protected:
    void javaScriptAlert(QWebFrame *frame, const QString &message);
    bool javaScriptConfirm(QWebFrame *frame, const QString &message);
    bool javaScriptPrompt(QWebFrame *frame, const QString &message, const QString &offered,
                          QString *answer);
    // NOLINTEND(modernize-use-override)

private:
    bool m_unattended;
};

#endif // UNATTENDEDPAGE_H
