// SPDX-License-Identifier: MIT
#ifndef ZAREXEXTBASE_H
#define ZAREXEXTBASE_H

/// \file
/// An object for the scripts of a page, and where a launcher registers the factory of it.

#include "nuvlaunchersupport_export.h"

#include <QObject>

class QWebFrame;
class QWebPage;
class QWidget;

/// The base class of objects that a launcher publishes to the scripts of a page, where they are known
/// as "zarexExt".
///
/// A subclass adds the slots, properties and signals that scripts may use:
///
/// \code
/// class TvExtension : public ZarexExtBase
/// {
///     Q_OBJECT
/// public:
///     TvExtension(QObject *parent, QWebPage *hostPage) : ZarexExtBase(parent, hostPage) {}
/// public Q_SLOTS:
///     QString model() const { return QLatin1String("box-1"); } // scripts call zarexExt.model()
/// };
/// \endcode
///
/// The object is published anew at every navigation of the page's main frame, under the object name
/// that it has at that time; child frames never see it. Scripts never delete it: it belongs to its
/// parent, or to whoever deletes it. Everything belongs to the thread of the page.
class NUVLAUNCHERSUPPORT_EXPORT ZarexExtBase : public QObject
{
    Q_OBJECT

public:
    /// Names the object "zarexExt" and makes it follow the main frame of `page`. The scripts of a
    /// document that is already loaded do not see it: call attachObject() for that. `page` is not
    /// owned and not watched: once it is deleted, neither hostFrame(), hostView() nor attachObject()
    /// may be called. With a null page the object is never published.
    ZarexExtBase(QObject *parent, QWebPage *page);

    ~ZarexExtBase();

    /// The main frame of the page; null without a page.
    QWebFrame *hostFrame() const;

    /// The widget that shows the page; null without a page, and for a page that no widget shows.
    QWidget *hostView() const;

public Q_SLOTS:
    /// Publishes the object in the present window object of the main frame. Does nothing without
    /// one.
    void attachObject();

private:
    QWebPage *page;
};

/// Makes the extension objects of a launcher. It is defined by those who implement and use it; here
/// it is only passed on.
class ZarexExtFactory;

/// Stores `factory`, which is not owned, instead of an earlier one; null clears it. Meant to be called
/// once, at start-up; nothing is locked.
NUVLAUNCHERSUPPORT_EXPORT void registerZarexExtFactory(ZarexExtFactory const *factory);

/// The factory that was registered last; null when there is none.
NUVLAUNCHERSUPPORT_EXPORT ZarexExtFactory const *getZarexExtFactory();

#endif // ZAREXEXTBASE_H
