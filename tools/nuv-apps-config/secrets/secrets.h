// SPDX-License-Identifier: MIT
#ifndef SECRETS_H
#define SECRETS_H

#include "tools/nuv-apps-config/text/ranges.h"

#include <QSet>
#include <QString>
#include <QVariant>

struct Document;

/// Keeps pass phrases, and the passwords inside addresses, of one file out of every output. All that is
/// made of the file's bytes passes through here on its way out.
class Secrets
{
public:
    Secrets(const QByteArray &bytes, const Document &document, bool hasSyntaxErrors);

    /// Where the secrets are in the file, in order and apart from each other; none is empty. In a file that
    /// could be read the tree says what is secret. In one with syntax errors nothing is where it should be:
    /// there every word near the name of a secret is taken for one.
    const Ranges &ranges() const { return m_ranges; }

    /// Whether one byte of the piece is secret.
    bool areIn(int offset, int length) const;

    /// A sentence of the program about the piece of the file at `offset`. What the user wrote is in
    /// double quotes in it, or is more than words in lower case. It is masked where it repeats five
    /// characters of a secret; about a secret itself all that is quoted is.
    QString sentence(const QString &text, int offset, int length) const;

    /// A key or a value of the file, or a part of one.
    QString text(const QString &text) const;

    /// A flat key, or the path of one.
    QString path(const QString &path) const;

    /// A value of the flat keys as it may be shown under that key.
    QVariant value(const QString &path, const QVariant &value) const;

    /// The same without knowledge of the file, for the properties of the interface.
    static QVariant shown(const QString &path, const QVariant &value);

    static QString mask();

private:
    void addPieces(const QString &text);
    std::vector<bool> repeated(const QString &text) const;
    void keepOwnWords(const QString &text, std::vector<bool> &masked) const;
    void judgeQuoted(const QString &text, bool isAboutSecret, std::vector<bool> &masked) const;

    Ranges m_ranges;
    QSet<QString> m_pieces; ///< every five characters of the secrets, in lower case
};

#endif // SECRETS_H
