// SPDX-License-Identifier: MIT
#ifndef PATTERN_H
#define PATTERN_H

#include <QString>
#include <QtGlobal>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QRegExp>
#else
#include <QRegularExpression>

#include <algorithm>
#include <new>
#endif

/// A regular expression, found in a string unit by unit: a surrogate is a character like any other.
///
/// Qt 4 has QRegExp only, and Qt 6 has QRegularExpression only. A pattern may use what both read alike:
/// characters, sets of them, groups, alternatives and repetitions, "." for any character, "^" and "$"
/// for the two ends of the text, and "\w" outside of a set for a letter, a digit, a mark or "_".
class Pattern
{
public:
    explicit Pattern(const char *latin1);

    /// The place of the first match, -1 when there is none.
    int indexIn(const QString &text);

    bool isIn(const QString &text) { return indexIn(text) >= 0; }

    /// `text` up to the first match.
    QString before(const QString &text) { return text.left(indexIn(text)); }

    /// Of the last match, the n-th group; 0 is all of it. Empty when there was none.
    QString cap(int n = 0) const;

private:
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QRegExp m_expression;
#else
    QRegularExpression m_expression;
    QRegularExpressionMatch m_match;
    QString m_text;
#endif
};

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)

inline Pattern::Pattern(const char *latin1) : m_expression(QLatin1String(latin1)) {}

inline int Pattern::indexIn(const QString &text)
{
    return m_expression.indexIn(text);
}

inline QString Pattern::cap(int n) const
{
    return m_expression.cap(n);
}

#else

inline Pattern::Pattern(const char *latin1)
    : m_expression(QString::fromLatin1(latin1)
                       .replace(QLatin1String("$"), QLatin1String("\\z"))
                       .replace(QLatin1String("\\w"), QLatin1String("[\\p{L}\\p{N}\\p{M}_]")),
                   QRegularExpression::DotMatchesEverythingOption)
{
}

// Text that is not well-formed matches nothing, hence no surrogates.
inline int Pattern::indexIn(const QString &text)
{
    m_text = text;
    QString units = text;
    std::replace_if(
        units.begin(), units.end(), [](QChar unit) { return unit.isSurrogate(); },
        QChar(QChar::ReplacementCharacter));
    m_match = m_expression.match(units);
    if (!m_match.isValid()) // for the toolkit nothing matches then
        throw std::bad_alloc();
    return int(m_match.capturedStart());
}

inline QString Pattern::cap(int n) const
{
    const qsizetype begin = m_match.capturedStart(n);
    return begin < 0 ? QString() : m_text.mid(begin, m_match.capturedLength(n));
}

#endif

#endif // PATTERN_H
