#ifndef SECRETS_H
#define SECRETS_H

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <vector>

struct Document;

/// Keeps pass phrases, and the passwords inside addresses, out of every output.
namespace Secrets {

/// What stands in place of a secret, however long that is.
QString mask();

/// Whether all of the value of that key is secret. Takes misspelt keys for what they mean.
bool isSecretKey(const QString &key);

/// The same for the last piece, or any other, of a flat key or a path.
bool isSecretPath(const QString &path);

/// The text with the password of an address in it masked.
QString withoutPassword(const QString &text);

/// The value as it may be shown under that key or path.
QVariant shown(const QString &path, const QVariant &value);

} // namespace Secrets

/// Where in a file secrets stand. It is looked for in the bytes, since a file with mistakes has no
/// tree to go by, and in the tree as well, since a key can be written with escapes.
class SecretRanges
{
public:
    SecretRanges(const QByteArray &bytes, const Document &document);

    bool covers(int offset) const;

    struct Range {
        int begin;
        int end;
    };
    const std::vector<Range> &all() const { return m_ranges; }

private:
    void findPassPhrases(const QByteArray &bytes);
    void findPasswords(const QByteArray &bytes);
    void findInTree(const Document &document);
    void merge();

    std::vector<Range> m_ranges; ///< in order, apart from each other
};

#endif // SECRETS_H
