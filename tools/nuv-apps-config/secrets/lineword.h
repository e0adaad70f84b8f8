// SPDX-License-Identifier: MIT
#ifndef LINEWORD_H
#define LINEWORD_H

#include <QByteArray>
#include <QString>

#include <vector>

/// A piece of a line of a file with mistakes.
struct LineWord {
    enum Type {
        Text, ///< between two quotes
        OpenText, ///< from a quote to the end of the line
        Bare, ///< anything else that is no blank
        Mark ///< one of { } [ ] : , = ;
    };

    Type type;
    int begin;
    int end;
    QString text; ///< decoded, without quotes

    bool isNumber() const;
    bool isMark(char mark) const { return type == Mark && text.at(0) == QLatin1Char(mark); }

    /// Whether the word is the key of a member whose value is the word after the next, a string or a
    /// number, and nothing about the three is wrong.
    static bool isMember(const std::vector<LineWord> &words, size_t index);

    /// Of a line, without its line feed.
    static std::vector<LineWord> wordsOf(const QByteArray &bytes, int begin, int end);
};

#endif // LINEWORD_H
