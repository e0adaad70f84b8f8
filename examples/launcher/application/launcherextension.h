// SPDX-License-Identifier: MIT
#ifndef LAUNCHEREXTENSION_H
#define LAUNCHEREXTENSION_H

#include "application/zarexextfactory.h"
#include <ZarexExtBase>

#include <QString>
#include <QVariant>

/// What the scripts of a page know as window.zarexExt:
///
/// \code
/// zarexExt.model                     // a property
/// zarexExt.viewSize().width          // a slot that answers an object
/// zarexExt.say("hello");             // writes to the launcher's output
/// zarexExt.open("given");            // opens the application with that tag
/// \endcode
///
/// The engine shows a script every slot, signal and property that is not private, those of the base
/// classes, too. Beyond the above that is, each also under its whole signature, as in
/// zarexExt["say(QString)"]:
///
/// - openRequested, a signal, with which a script can do what it can do with open;
/// - attachObject, which publishes the object once more in the document that has it already;
/// - the signals destroyed and objectNameChanged, which nobody listens to;
/// - deleteLater and objectName. They would harm, so that this class hides them behind ones that do
///   nothing.
///
/// A script cannot take a member away or replace it. What it adds to the object stays with the object,
/// so that each document is given one of its own.
class LauncherExtension : public ZarexExtBase
{
    Q_OBJECT
    Q_PROPERTY(QString model READ model CONSTANT)
    Q_PROPERTY(QString objectName READ objectName SCRIPTABLE false)

public:
    LauncherExtension(QObject *parent, QWebPage *servedPage);

    QString model() const;

public Q_SLOTS:
    /// The tag of the application that the page belongs to.
    QString application() const;

    /// The width and the height of the view, in pixels of the screen.
    QVariantMap viewSize() const;

    /// Writes a line to the launcher's output.
    void say(const QString &text) const;

    void open(const QString &tag);

    /// Does nothing: a script is not to delete what belongs to the launcher.
    void deleteLater() {}

Q_SIGNALS:
    void openRequested(const QString &tag);
};

class LauncherExtensionFactory : public ZarexExtFactory
{
public:
    ZarexExtBase *create(QObject *parent, QWebPage *page,
                         const BroadcastAccess &access) const override;
};

#endif // LAUNCHEREXTENSION_H
