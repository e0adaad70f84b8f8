// SPDX-License-Identifier: MIT
#ifndef BROADCASTACCESS_H
#define BROADCASTACCESS_H

#include <QString>
#include <QStringList>

class QUrl;
class QWebSecurityOrigin;

/// Which documents of an application find the extension object, and whether it controls the broadcast
/// receiver. What the engine calls the origin of a document decides, not what the document says.
class BroadcastAccess
{
public:
    BroadcastAccess();

    /// The domains whose documents are answered. Returns false, and changes nothing, when one of them
    /// is no name of a domain.
    bool setDomains(const QStringList &domains);

    void setClearance(bool isGiven);

    /// Whether the object has the members that control the receiver. False at first.
    bool hasClearance() const;

    /// The domains that were set, normalized; none at first.
    QStringList domains() const;

    /// Whether the documents of `origin` are answered in the application that begins with `home`: files
    /// where it begins with a file, and those of the web whose host is one of the domains or is below
    /// one. Where no domains are set, the host of `home` is the only one. All others are refused: those
    /// of other schemes, those without an origin, as in a sandbox, and those without TLS where `home`
    /// has it, as whoever is between could have written them.
    bool answers(const QWebSecurityOrigin &origin, const QUrl &home) const;

private:
    bool m_domainsAreSet;
    QStringList m_domains;
    bool m_hasClearance;
};

#endif // BROADCASTACCESS_H
