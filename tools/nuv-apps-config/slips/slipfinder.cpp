// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/slips/slipfinder.h"

#include "tools/nuv-apps-config/text/utf8.h"

#include <algorithm>
#include <cstring>

namespace {

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool isPartOfNumber(char byte)
{
    return isDigit(byte) || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
        || byte == '_' || byte == '.' || byte == '%' || byte == '+' || byte == '-';
}

bool isOneOf(char byte, const char *bytes)
{
    return byte != '\0' && std::strchr(bytes, byte);
}

class SlipFinder
{
public:
    SlipFinder(const SourceText &source, const std::vector<Step> &steps)
        : m_source(source), m_steps(steps)
    {
    }

    std::vector<Slip> find();

private:
    void atToken(int index);
    void removal(int index);
    void replacements(int index);
    void replaceByte(int index, int offset, int bracketCost);
    void insertions(int index);
    void comment(int index);
    void exchangeBytes(int index, int offset);
    void quoteInFront(int index);
    void exchange(int index);
    void quotes(int index);
    void closingQuotes(int index);
    void closingQuotesUpTo(int end, int index);
    void otherQuotes(int index);
    void number(int index);
    void add(Slip::Kind kind, int index, int cost, int offset, int removed,
             const QByteArray &inserted);
    void addAt(Slip::Kind kind, int index, int cost, int place, int offset, int removed,
               const QByteArray &inserted);

    const Token &token(int index) const { return m_steps[size_t(index)].token; }
    char at(int offset) const
    {
        return offset >= 0 && offset < m_source.size() ? m_source.bytes().at(offset) : '\0';
    }
    /// The byte of a token that is a single one, 0 for others.
    char sign(int index) const
    {
        const Token &one = token(index);
        return one.end == one.begin + 1 && !isPartOfNumber(at(one.begin)) ? at(one.begin) : '\0';
    }
    bool isString(int index) const { return at(token(index).begin) == '"'; }
    bool isKeyExpected(int index) const
    {
        const Structure::Expected expected = m_steps[size_t(index)].before.expected;
        return expected == Structure::FirstKey || expected == Structure::Key;
    }
    // A typographic quote has up to three bytes.
    int widthOfQuote(int offset) const
    {
        return qMax(1,
                    Utf8::length(m_source.bytes().constData() + offset, m_source.size() - offset));
    }
    int endInFront(int index) const
    {
        return index + 1 < int(m_steps.size()) ? token(index + 1).end : token(index).begin;
    }

    const SourceText &m_source;
    const std::vector<Step> &m_steps;
    std::vector<Slip> m_slips;
};

std::vector<Slip> SlipFinder::find()
{
    for (int i = 0; i < int(m_steps.size()); ++i)
        atToken(i);
    std::stable_sort(m_slips.begin(), m_slips.end(),
                     [](const Slip &a, const Slip &b) { return a.cost < b.cost; });
    return m_slips;
}

void SlipFinder::add(Slip::Kind kind, int index, int cost, int offset, int removed,
                     const QByteArray &inserted)
{
    addAt(kind, index, cost, offset, offset, removed, inserted);
}

void SlipFinder::addAt(Slip::Kind kind, int index, int cost, int place, int offset, int removed,
                       const QByteArray &inserted)
{
    m_slips.push_back(Slip { kind, Edit { offset, removed, inserted }, index, cost + 2 * index,
                             place, qMax(qMax(1, removed), offset - place) });
}

void SlipFinder::atToken(int index)
{
    insertions(index);
    quoteInFront(index);
    comment(index);
    if (token(index).end == token(index).begin)
        return; // the end of the file
    removal(index);
    replacements(index);
    exchange(index);
    number(index);
    if (isString(index))
        quotes(index);
    else
        exchangeBytes(index, token(index).end - 1);
}

void SlipFinder::removal(int index)
{
    const Token &one = token(index);
    const char byte = sign(index);
    if (byte == ',') {
        const bool isLast = index > 0 && isOneOf(sign(index - 1), "}]");
        add(isLast ? Slip::TrailingComma : Slip::ExtraComma, index, 1, one.begin, 1, QByteArray());
    } else if (byte == ':') {
        add(Slip::ExtraColon, index, 3, one.begin, 1, QByteArray());
    } else if (isOneOf(byte, "{[")) {
        const bool isTwice = at(one.begin - 1) == byte || at(one.end) == byte;
        add(Slip::ExtraOpening, index, isTwice ? 2 : 7, one.begin, 1, QByteArray());
    } else if (isOneOf(byte, "}]")) {
        add(Slip::ExtraClosing, index, 3, one.begin, 1, QByteArray());
    } else if (one.code == T_STRING && !isString(index)) {
        add(Slip::ExtraCharacter, index, 3, one.begin, widthOfQuote(one.begin), QByteArray());
    } else if (one.code == T_ERROR && !isString(index)) {
        add(Slip::ExtraCharacter, index, 3, one.begin, one.end - one.begin, QByteArray());
    } else if (!isString(index) && one.end - one.begin <= 2) {
        add(Slip::ExtraCharacter, index, 4, one.begin, one.end - one.begin, QByteArray());
    }
}

void SlipFinder::replacements(int index)
{
    const char byte = sign(index);
    if (byte == '\0' || byte == '"')
        return;
    const int begin = token(index).begin;
    replaceByte(index, begin, isOneOf(byte, "{}[]") ? 3 : 6);
    add(Slip::WrongForQuote, index, 5, begin, 1, "\"");
}

void SlipFinder::replaceByte(int index, int offset, int bracketCost)
{
    const char byte = at(offset);
    for (const char wanted : { ',', ':', '{', '}', '[', ']' }) {
        if (wanted == byte)
            continue;
        Slip::Kind kind = Slip::WrongBracket;
        int cost = bracketCost;
        if (wanted == ',') {
            kind = Slip::WrongForComma;
            cost = isOneOf(byte, ";.") ? 1 : 4;
        } else if (wanted == ':') {
            kind = Slip::WrongForColon;
            cost = isOneOf(byte, "=;") ? 1 : 3;
        }
        if (byte == '"')
            cost = 6;
        add(kind, index, cost, offset, 1, QByteArray(1, wanted));
    }
}

void SlipFinder::insertions(int index)
{
    const int begin = token(index).begin;
    const int place = endInFront(index);
    addAt(Slip::MissingComma, index, 2, place, begin, 0, ",");
    addAt(Slip::MissingColon, index, 2, place, begin, 0, ":");
    const Structure::Expected expected = m_steps[size_t(index)].before.expected;
    const int key = index + (expected == Structure::MemberValue ? 2 : 1);
    if ((expected == Structure::MemberValue || expected == Structure::Colon)
        && key < int(m_steps.size()))
        m_slips.push_back(
            Slip { Slip::MissingValue, Edit { begin, 0, key == index + 1 ? ":null" : "null" },
                   index, 3 + 2 * index, token(key).begin, token(key).end - token(key).begin });
    add(Slip::MissingOpening, index, 4, begin, 0, "{");
    add(Slip::MissingOpening, index, 4, begin, 0, "[");
    const char innermost = m_steps[size_t(index)].before.innermost;
    const int nextLine = place + 1;
    const bool isAtEnd = token(index).end == begin && at(place) == '\n';
    if (innermost)
        add(Slip::MissingClosing, index, 3, isAtEnd ? nextLine : begin, 0,
            innermost == '{' ? "}" : "]");
}

// The letter b is a blank for the lexer, so a word may begin in front of its token.
void SlipFinder::quoteInFront(int index)
{
    int begin = token(index).begin;
    if (isString(index) || begin == m_source.size())
        return;
    while (begin > endInFront(index) && at(begin - 1) == 'b')
        --begin;
    add(Slip::MissingOpeningQuote, index, 4, begin, 0, "\"");
}

// Two signs that have changed places.
void SlipFinder::exchange(int index)
{
    if (index == 0)
        return;
    const Token &one = token(index);
    const char first = sign(index);
    const char second = sign(index - 1);
    if (!first || !second || first == second || one.end != token(index - 1).begin)
        return;
    const QByteArray exchanged = QByteArray(1, second) + first;
    add(first == ',' ? Slip::MisplacedComma : Slip::Exchanged, index, 3, one.begin, 2, exchanged);
}

void SlipFinder::exchangeBytes(int index, int offset)
{
    const char first = at(offset);
    const char second = at(offset + 1);
    if (!first || !second || first == second || isOneOf(first, "\r\n") || isOneOf(second, "\r\n"))
        return;
    const bool isInString = second == '"' && isOneOf(first, ":,"); // what belongs after it
    add(Slip::Exchanged, index, isInString ? -1 : 5, offset, 2, QByteArray(1, second) + first);
}

// What the tokenizer took for a comment may be a slip of one byte.
void SlipFinder::comment(int index)
{
    const int begin = endInFront(index);
    const int end = token(index).begin;
    for (int i = begin; i < end; ++i) {
        if (at(i) == '#' || at(i) == '/')
            return add(Slip::ExtraCharacter, index, 4, i, 1, QByteArray());
    }
}

void SlipFinder::quotes(int index)
{
    const Token &one = token(index);
    closingQuotes(index);
    otherQuotes(index);
    replaceByte(index, one.begin, 6);
    if (one.end - 1 > one.begin) {
        replaceByte(index, one.end - 1, 6);
        exchangeBytes(index, one.end - 2);
    }
    exchangeBytes(index, one.end - 1);
    if (one.code == T_ERROR) {
        add(Slip::ExtraQuote, index, 3, one.begin, 1, QByteArray());
        return;
    }
    const bool isEmpty = one.end == one.begin + 2;
    add(Slip::ExtraQuote, index, isEmpty ? 2 : 5, one.begin, 1, QByteArray());
    add(Slip::ExtraQuote, index, isKeyExpected(index) ? 3 : 5, one.end - 1, 1, QByteArray());
    add(Slip::UnescapedQuote, index, 4, one.end - 1, 0, "\\");
    const int longestQuotation = 60;
    int second = one.end;
    while (second < one.end + longestQuotation && !isOneOf(at(second), "\",:{}[]\n"))
        ++second;
    if (at(second) == '"')
        addAt(Slip::UnescapedQuote, index, 4, one.end - 1, one.end - 1, second + 2 - one.end,
              "\\\"" + m_source.bytes().mid(one.end, second - one.end) + "\\\"");
}

// Where a string may have been meant to end: at the end of its line or at the quote that ends it, in
// front of the signs there; where a colon follows a key.
void SlipFinder::closingQuotes(int index)
{
    const Token &one = token(index);
    const int lineEnd = qMin(m_source.lineEnd(one.begin), one.end);
    closingQuotesUpTo(lineEnd < one.end || one.code == T_ERROR ? lineEnd : one.end - 1, index);
    for (int colon = one.begin + 1; colon < lineEnd && isKeyExpected(index); ++colon) {
        if (at(colon) == ':') {
            addAt(Slip::MissingClosingQuote, index, 2, one.begin, colon, 0, "\"");
            if (!isPartOfNumber(at(colon - 1)))
                add(Slip::WrongForQuote, index, 1, colon - 1, 1, "\"");
            if (at(colon + 1) == ':')
                add(Slip::WrongForQuote, index, 1, colon, 1, "\"");
            break;
        }
    }
}

void SlipFinder::closingQuotesUpTo(int end, int index)
{
    const int begin = token(index).begin;
    for (;; --end) {
        addAt(Slip::MissingClosingQuote, index, 2, begin, end, 0, "\"");
        if (at(end - 1) == '\'')
            add(Slip::WrongForQuote, index, 1, end - 1, 1, "\"");
        if (end <= begin + 1 || !isOneOf(at(end - 1), " \t,{[}]"))
            return;
    }
}

void SlipFinder::otherQuotes(int index)
{
    const Token &one = token(index);
    const int lineEnd = qMin(m_source.lineEnd(one.begin), one.end);
    for (int i = one.begin + 1; i + 1 < lineEnd; ++i) {
        if (at(i) != '\\')
            continue;
        if (at(i + 1) == '"')
            return add(Slip::EscapedQuote, index, 1, i, 1, "\\\\");
        ++i;
    }
}

void SlipFinder::number(int index)
{
    const Token &one = token(index);
    if (one.code != T_NUMBER)
        return;
    int end = one.end;
    while (isPartOfNumber(at(end)))
        ++end;
    if (end > one.end)
        m_slips.push_back(Slip { Slip::NumberWithTail,
                                 Edit { one.end, end - one.end, QByteArray() }, index, 0, one.begin,
                                 end - one.begin });
    if (index >= 2 && sign(index - 1) == ',' && token(index - 2).code == T_NUMBER
        && token(index - 1).begin == one.end && token(index - 2).begin == one.end + 1)
        m_slips.push_back(Slip { Slip::DecimalComma, Edit { one.end, 1, "." }, index, 1, one.begin,
                                 token(index - 2).end - one.begin });
}

} // namespace

std::vector<Slip> slipsNear(const SourceText &source, const std::vector<Step> &steps)
{
    return SlipFinder(source, steps).find();
}
