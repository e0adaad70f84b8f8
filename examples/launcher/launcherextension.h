#ifndef LAUNCHEREXTENSION_H
#define LAUNCHEREXTENSION_H

#include "examples/launcher/zarexextfactory.h"
#include "hooks/zarexextbase.h"

#include <QString>
#include <QVariant>

/// What the scripts of a page know as window.zarexExt:
///
/// \code
/// zarexExt.model                                // a property
/// zarexExt.volumeChanged.connect(showVolume);   // a signal
/// zarexExt.volume = 40;                         // showVolume(40) is called
/// zarexExt.viewSize().width                     // a slot that answers an object
/// zarexExt.open("given");                       // opens the application with that tag
/// \endcode
class LauncherExtension : public ZarexExtBase
{
    Q_OBJECT
    Q_PROPERTY(QString model READ model CONSTANT)
    Q_PROPERTY(int volume READ volume WRITE setVolume NOTIFY volumeChanged)

public:
    LauncherExtension(QObject *parent, QWebPage *servedPage);

    QString model() const;

    /// From 0 to 100; what a script sets beyond is brought back to it.
    int volume() const;
    void setVolume(int volume);

public Q_SLOTS:
    /// The tag of the application that the page belongs to.
    QString application() const;

    /// The width and the height of the view, in pixels of the screen.
    QVariantMap viewSize() const;

    /// Writes a line to the launcher's output.
    void say(const QString &text) const;

    void open(const QString &tag);

Q_SIGNALS:
    void volumeChanged(int volume);
    void openRequested(const QString &tag);

private:
    int m_volume;
};

class LauncherExtensionFactory : public ZarexExtFactory
{
public:
    ZarexExtBase *create(QObject *parent, QWebPage *page) const override;
};

#endif // LAUNCHEREXTENSION_H
