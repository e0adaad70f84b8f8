// SPDX-License-Identifier: MIT
#ifndef SECRETLINES_H
#define SECRETLINES_H

#include "tools/nuv-apps-config/secrets/lineword.h"
#include "tools/nuv-apps-config/text/ranges.h"

class DecodedText;

/// Finds the secrets of a file that is no tree, by its lines. A line is secret that holds the name of a
/// secret, that follows such a line, or that is in a certificate. All of its words are, but for the
/// keys that are known, and for the values of other known keys where nothing about them is wrong.
class SecretLines
{
public:
    SecretLines(const QByteArray &bytes, Ranges &ranges) : m_bytes(bytes), m_ranges(ranges) {}

    void find();

private:
    struct Line {
        int begin;
        int end;
        bool isBlank;
        bool isComment;
    };

    Line lineAt(int begin) const;
    void findInLine(const Line &line);
    bool isInCertificate(const Line &line, const DecodedText &decoded,
                         const std::vector<LineWord> &words, const QString &text);
    void leaveCertificate(int begin, const std::vector<LineWord> &words);
    void closeBrace();
    bool follows(const Line &line, bool hasName);
    bool hasPassword(const std::vector<LineWord> &words, const DecodedText &decoded) const;
    void addWords(const std::vector<LineWord> &words);
    void addPasswords(const std::vector<LineWord> &words);
    void addPassword(const LineWord &word, const QString &key);

    const QByteArray &m_bytes;
    Ranges &m_ranges;
    bool m_isInCertificate = false;
    int m_depth = 0; ///< of the braces since the name of the certificate
    int m_strayBraces = 0; ///< that closed something before the first one
    bool m_isEmpty = true; ///< the certificate has no member so far
    /// The last line that is not blank holds the name of a secret, or has a mistake in a certificate.
    bool m_followsName = false;
    int m_brackets = 0; ///< that are open since then
    QString m_tail; ///< the end of the last line: a name may have a line break in it
    bool m_isOpenText = false; ///< the last quote of that line has no other
    std::vector<LineWord> m_comment; ///< in the lines before this one
};

#endif // SECRETLINES_H
