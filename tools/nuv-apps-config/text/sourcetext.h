// SPDX-License-Identifier: MIT
#ifndef SOURCETEXT_H
#define SOURCETEXT_H

#include <QByteArray>
#include <QString>

#include <vector>

/// A place for people: both from 1. A column counts characters; where a line is not UTF-8, bytes.
struct Place {
    int line;
    int column;
};

/// The bytes of a file and its lines. A file may be one long line, so what is asked of a line does not
/// go through it.
class SourceText
{
public:
    SourceText(const QString &name, const QByteArray &bytes);

    const QString &name() const { return m_name; }
    const QByteArray &bytes() const { return m_bytes; }
    int size() const { return m_bytes.size(); }

    Place place(int offset) const;

    /// The bounds of the line that `offset` is in, without its end of line.
    int lineBegin(int offset) const;
    int lineEnd(int offset) const;

    /// How many blanks the line of `offset` begins with.
    int indentation(int offset) const;

    /// Whether nothing but blanks is before `offset` on its line.
    bool isFirstOnLine(int offset) const;

private:
    struct Line {
        int begin;
        int indentation;
        bool isUtf8;
    };

    void findLines() const;
    void addLine(int begin, int end) const;
    void countCharacters() const;
    int charactersBefore(int offset) const;
    size_t lineIndex(int offset) const;

    QString m_name;
    QByteArray m_bytes;
    // Found when the first is asked for: many files are read and never reported.
    mutable std::vector<Line> m_lines;
    mutable std::vector<int> m_characters; ///< in front of each block of bytes
};

#endif // SOURCETEXT_H
