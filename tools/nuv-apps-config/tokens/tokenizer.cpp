// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/tokens/tokenizer.h"

#include "tools/nuv-apps-config/tokens/literals.h"
#include "tools/nuv-apps-config/tokens/numbers.h"
#include "tools/nuv-apps-config/text/matching.h"
#include "tools/nuv-apps-config/text/spelling.h"
#include "tools/nuv-apps-config/text/utf8.h"

#include <cstring>

namespace {

struct Keyword {
    const char *spelling; ///< in lower case
    int code;
};

const Keyword keywords[] = {
    { "true", T_TRUE }, { "yes", T_TRUE },  { "on", T_TRUE },        { "false", T_FALSE },
    { "no", T_FALSE },  { "off", T_FALSE }, { "null", T_NULL },      { "none", T_NULL },
    { "nil", T_NULL },  { "nan", T_NULL },  { "undefined", T_NULL }, { "infinity", T_NULL },
};

// The keyword with one letter too many, too few or wrong: "tru" is true. Short ones are near to too
// much.
int nearlyKeyword(const QByteArray &word)
{
    const char *const words[] = { "true", "false", "null" };
    const int codes[] = { T_TRUE, T_FALSE, T_NULL };
    for (int i = 0; i < 3 && word.size() > 2; ++i) {
        if (Spelling::distance(QString::fromLatin1(word), QLatin1String(words[i]), 1) <= 1)
            return codes[i];
    }
    return Token::Word;
}

// Quotes that are none for the library, in UTF-8 and in the code page of Windows.
const char *const smartQuotes[] = { "\xe2\x80\x9c", "\xe2\x80\x9d", "\xe2\x80\x9e", "\xe2\x80\x9f",
                                    "\xe2\x80\x98", "\xe2\x80\x99", "\xc2\xab",     "\xc2\xbb",
                                    "\x93",         "\x94" };

// Blanks that are none: the no-break space, spaces of many widths, marks without a width.
const char *const invisibles[] = { "\xc2\xa0",     "\xe2\x80\x8b", "\xe2\x80\xaf", "\xe3\x80\x80",
                                   "\xef\xbb\xbf", "\xe2\x80\x82", "\xe2\x80\x83", "\xe2\x80\x89" };

bool isWordByte(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
        || (byte >= '0' && byte <= '9') || byte == '_' || byte == '$' || byte == '-';
}

QString text(const char *latin1)
{
    return QLatin1String(latin1);
}

} // namespace

Tokenizer::Tokenizer(const SourceText &source, Findings &findings, Manner manner)
    : m_source(source), m_findings(findings), m_manner(manner)
{
    restart(0);
}

// The rest of the text ends where the whole does, so that the lexer sees it with the same eyes.
void Tokenizer::restart(int offset)
{
    m_base = offset;
    m_lexer.reset(new JsonLexer(
        QByteArray::fromRawData(m_source.bytes().constData() + offset, m_source.size() - offset)));
}

bool Tokenizer::has(int offset, const char *bytes) const
{
    const int size = int(std::strlen(bytes));
    return offset + size <= m_source.size()
        && std::memcmp(m_source.bytes().constData() + offset, bytes, size_t(size)) == 0;
}

// The lexer's blanks: the letter b is one of them.
int Tokenizer::skipBlanks(int offset, int *firstStrayB) const
{
    for (; offset < m_source.size(); ++offset) {
        const char byte = at(offset);
        if (byte == 'b' && *firstStrayB < 0)
            *firstStrayB = offset;
        else if (byte != ' ' && byte != '\t' && byte != '\r' && byte != '\n' && byte != 'b')
            break;
    }
    return offset;
}

Token Tokenizer::next()
{
    for (;;) {
        int firstStrayB = -1;
        Token token;
        token.begin = skipBlanks(m_base + m_lexer->pos(), &firstStrayB);
        token.code = m_lexer->nextToken();
        token.end = m_base + m_lexer->pos();
        token.value = m_lexer->value();

        if (token.code == T_ERROR) {
            if (mend(&token, firstStrayB))
                return token;
            if (m_manner == Strict || !m_findings.isFull())
                continue;
            token.code = T_END_OF_FILE; // nobody reads on after so many mistakes
            return token;
        }
        if (m_manner == Mending)
            check(&token, firstStrayB);
        return token;
    }
}

void Tokenizer::check(Token *token, int firstStrayB)
{
    if (firstStrayB >= 0)
        reportStrayB(firstStrayB);
    if (token->code == T_STRING && !mendUnterminated(token))
        Literals::checkText(m_source, token->begin, token->end, m_findings);
    else if (token->code == T_NUMBER)
        Literals::checkNumber(m_source, token->begin, token->end, token->value, m_findings);
}

void Tokenizer::reportStrayB(int offset)
{
    int length = 1;
    while (at(offset + length) == 'b')
        ++length;
    m_findings
        .add("stray-b", offset, 1, text("the letter b between the entries is skipped"),
             text("remove it"))
        .edit = Edit { offset, length, QByteArray() };
}

// Finds out what was meant. False when it was nothing and the next token is to be read.
bool Tokenizer::mend(Token *token, int firstStrayB)
{
    const int begin = token->begin;
    if (at(begin) == '"') {
        if (m_manner == Mending)
            endTextAtLine(token);
        return true;
    }
    int wordBegin = begin; // the lexer took the first letters of "banana" for blanks
    while (wordBegin > 0 && firstStrayB >= 0 && at(wordBegin - 1) == 'b')
        --wordBegin;
    if (m_manner == Mending && firstStrayB >= 0 && firstStrayB < wordBegin)
        reportStrayB(firstStrayB);
    if (wordBegin == begin && mendPlaceholder(token))
        return true;
    token->begin = wordBegin;
    if (isWordByte(at(wordBegin))) { // a digit or a minus is a number for the lexer
        mendWord(token);
        return true;
    }
    token->begin = begin;
    if (skipComment(begin) || skipInvisible(begin))
        return false;
    return mendQuoted(token) || mendCharacter(token) || takeUnexpected(token);
}

void Tokenizer::mendWord(Token *token)
{
    int end = token->begin;
    while (isWordByte(at(end)))
        ++end;
    const QByteArray word = m_source.bytes().mid(token->begin, end - token->begin);
    token->code = nearlyKeyword(word.toLower());
    token->end = end;
    token->value = QString::fromLatin1(word);
    for (const Keyword &keyword : keywords) {
        if (word.toLower() == keyword.spelling)
            token->code = keyword.code;
    }
    restart(end);
}

void Tokenizer::extendWord(Token *word)
{
    int end = word->end;
    while (end < m_source.size() && !std::strchr(" \t\r\n,}]\"", at(end)))
        ++end;
    word->end = end;
    word->value = QString::fromLatin1(m_source.bytes().mid(word->begin, end - word->begin));
    restart(end);
}

bool Tokenizer::skipComment(int begin)
{
    int end = -1;
    if (has(begin, "//") || at(begin) == '#') {
        end = m_source.bytes().indexOf('\n', begin);
    } else if (has(begin, "/*")) {
        end = m_source.bytes().indexOf("*/", begin + 2);
        end = end >= 0 ? end + 2 : m_source.lineEnd(begin); // one that nobody ended has its line
    } else if (has(begin, "<!--")) {
        end = m_source.bytes().indexOf("-->", begin);
        end = end >= 0 ? end + 3 : m_source.lineEnd(begin);
    } else {
        return false;
    }
    if (end < 0)
        end = m_source.size();
    m_findings
        .add("comment", begin, end - begin, text("this file cannot hold comments"),
             text("remove it, or write it as the value of a key that begins with _comment"))
        .edit = Edit { begin, end - begin, QByteArray() };
    restart(end);
    return true;
}

bool Tokenizer::skipInvisible(int begin)
{
    for (const char *invisible : invisibles) {
        if (!has(begin, invisible))
            continue;
        const int size = int(std::strlen(invisible));
        if (begin == 0)
            m_findings
                .add("byte-order-mark", 0, size, text("the file begins with a byte-order mark"),
                     text("save it as UTF-8 without a byte-order mark (BOM)"))
                .edit = Edit { 0, size, QByteArray() };
        else
            m_findings
                .add("invisible-character", begin, size,
                     text("an invisible character that is not a blank for the library"),
                     text("replace it by a space"))
                .edit = Edit { begin, size, " " };
        restart(begin + size);
        return true;
    }
    return false;
}

// True where the character is left to the caller.
bool Tokenizer::takeUnexpected(Token *token)
{
    const int begin = token->begin;
    const int size =
        qMax(1, Utf8::length(m_source.bytes().constData() + begin, m_source.size() - begin));
    token->end = begin + size;
    restart(token->end);
    if (m_manner == Strict)
        return true;
    m_findings.add("unexpected-token", begin, size, text("this character cannot be here"));
    return false;
}

// Texts in other quotes. They end at the like, at the end of the line, or at a straight quote.
bool Tokenizer::mendQuoted(Token *token)
{
    const int begin = token->begin;
    int opening = 0;
    const bool isSingle = at(begin) == '\'' || at(begin) == '`';
    if (isSingle)
        opening = 1;
    for (const char *quote : smartQuotes) {
        if (opening == 0 && has(begin, quote))
            opening = int(std::strlen(quote));
    }
    if (opening == 0)
        return false;

    const int lineEnd = m_source.lineEnd(begin);
    int end = begin + opening;
    int closing = 0;
    for (; end < lineEnd; ++end) {
        if (at(end) == '"' || (isSingle && at(end) == at(begin)))
            closing = 1;
        for (const char *quote : smartQuotes) {
            if (!isSingle && closing == 0 && has(end, quote))
                closing = int(std::strlen(quote));
        }
        if (closing > 0)
            break;
    }
    token->code = T_STRING;
    token->value =
        QString::fromLatin1(m_source.bytes().mid(begin + opening, end - begin - opening));
    token->end = end + closing;
    m_findings
        .add(isSingle ? "single-quotes" : "smart-quotes", begin, token->end - begin,
             isSingle ? text("a string in single quotes") : text("a string in typographic quotes"),
             text("use the straight double quote, \""))
        .edit = Edit { begin, token->end - begin,
                       '"' + m_source.bytes().mid(begin + opening, end - begin - opening) + '"' };
    restart(token->end);
    return true;
}

// What a template has where a value is to be put in, as in ${SCALE}.
bool Tokenizer::mendPlaceholder(Token *token)
{
    static const QRegularExpression placeholder(QLatin1String(
        "\\A(\\$\\{[^}\"\n]*\\}|\\$\\([^)\"\n]*\\)|\\$\\w+|@\\w+@|%\\w+%|<\\w[\\w -]*>)"));
    const int begin = token->begin;
    if (!std::strchr("$@%<", at(begin)))
        return false;
    const int longest = 100;
    const QByteArray line = m_source.bytes().mid(begin, longest);
    const QString found = matched(placeholder, QString::fromLatin1(line)).captured();
    if (found.isEmpty())
        return false;
    token->code = T_STRING;
    token->value = found;
    token->end = begin + found.size();
    m_findings.add("unexpected-token", begin, found.size(),
                   text("a placeholder that nothing was put in for"),
                   text("replace the placeholder by a value"));
    restart(token->end);
    return true;
}

// Characters of other languages that stand for one of this.
bool Tokenizer::mendCharacter(Token *token)
{
    const int begin = token->begin;
    const char byte = at(begin);
    if (byte == '.' && at(begin + 1) >= '0' && at(begin + 1) <= '9') {
        int end = begin + 1;
        while ((at(end) >= '0' && at(end) <= '9') || at(end) == '.')
            ++end;
        const QByteArray meant = Numbers::meant(m_source.bytes().mid(begin, end - begin));
        Finding &finding = m_findings.add("bad-number", begin, end - begin,
                                          text("a number cannot begin with a point"),
                                          text("write ") + QString::fromLatin1(meant));
        if (meant.isEmpty())
            finding.hint = text("write digits alone"); // it has several points
        else
            finding.edit = Edit { begin, end - begin, meant };
        token->value = m_source.bytes().mid(begin, end - begin).toDouble();
        token->code = T_NUMBER;
        token->end = end;
        restart(end);
        return true;
    }
    if (m_manner == Strict || (byte != '=' && byte != ';'))
        return false;
    token->code = byte == '=' ? T_COLON : T_COMMA;
    token->end = begin + 1;
    m_findings.add(byte == '=' ? "missing-colon" : "missing-comma", begin, 1,
                   byte == '=' ? text("a colon belongs here, not =")
                               : text("a comma belongs here, not ;"));
    restart(begin + 1);
    return true;
}

// A quote that is missing lets the text run on to the next one in the file. What follows that is then
// the inside of another text, and fits nowhere.
bool Tokenizer::mendUnterminated(Token *token)
{
    const char *const bytes = m_source.bytes().constData();
    const int size = token->end - token->begin;
    int stray = -1;
    const int follower = skipBlanks(token->end, &stray);
    if (follower == m_source.size() || QByteArray(",:}]").contains(at(follower)))
        return false;
    const bool isKey = size > 3 && bytes[token->end - 2] == ' ' && bytes[token->end - 3] == ':';
    if (!isKey && !std::memchr(bytes + token->begin, '\n', size_t(size)))
        return false;
    endTextAtLine(token);
    return true;
}

// Takes the text to end with its line. A comma there, or a brace in front of it, is not part of it.
void Tokenizer::endTextAtLine(Token *token)
{
    const int begin = token->begin;
    int end = m_source.lineEnd(begin);
    while (end > begin + 1 && std::strchr(" \t,{[}]", at(end - 1)))
        --end;
    const int colon = m_source.bytes().indexOf(':', begin);
    const char before =
        begin + 1 < m_source.size() && colon > begin && colon < end ? at(colon + 1) : '\0';
    if (before == ' ' && at(colon + 2) != '\0' && std::strchr("\"0123456789tfn{[", at(colon + 2)))
        end = colon; // it was the key that lacks its quote
    m_findings.add("unterminated-string", begin, end - begin, text("the closing quote is missing"),
                   text("the string would go on to the next quote in the file"));
    token->code = T_STRING;
    token->end = end;
    token->value = QString::fromLatin1(m_source.bytes().mid(begin + 1, end - begin - 1));
    restart(end);
}
