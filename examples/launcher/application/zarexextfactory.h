// SPDX-License-Identifier: MIT
#ifndef ZAREXEXTFACTORY_H
#define ZAREXEXTFACTORY_H

class BroadcastAccess;
class QObject;
class QWebPage;
class ZarexExtBase;

/// Makes the extension objects of pages. The library hands a registered factory on and leaves its
/// members to the launcher: these are ours.
class ZarexExtFactory
{
public:
    virtual ~ZarexExtFactory() {}

    /// A new extension object for `page`, with what `access` gives to its application. It belongs to
    /// `parent`.
    virtual ZarexExtBase *create(QObject *parent, QWebPage *page,
                                 const BroadcastAccess &access) const = 0;
};

#endif // ZAREXEXTFACTORY_H
