// SPDX-License-Identifier: MIT
#ifndef DECODEDTEXT_H
#define DECODEDTEXT_H

#include <QByteArray>
#include <QString>

#include <vector>

/// Bytes of the file with their escapes resolved, as the library reads them, and where each character
/// came from. Takes any bytes, of a text or not.
class DecodedText
{
public:
    DecodedText(const QByteArray &bytes, int begin, int end);

    const QString &text() const { return m_text; }

    /// The offset in the file of that character, or of the end.
    int offset(int index) const { return m_offsets[size_t(index)]; }

private:
    QString m_text;
    std::vector<int> m_offsets;
};

#endif // DECODEDTEXT_H
