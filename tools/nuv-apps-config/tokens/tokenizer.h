// SPDX-License-Identifier: MIT
#ifndef TOKENIZER_H
#define TOKENIZER_H

#include "json/jsonlexer.h"
#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

#include <QVariant>

#include <memory>

/// A token of the library's lexer and where it is, or what a person may have meant where the
/// lexer gave up.
struct Token {
    enum { Word = T_ERROR + 1 }; ///< letters without quotes that are no keyword

    int code = T_END_OF_FILE; ///< a JsonToken, or Word
    int begin = 0;
    int end = 0;
    QVariant value; ///< of a word, and of a keyword in a wrong spelling: its text
};

/// The tokens of a file, from the library's own lexer. Where that finds an error, the cause is
/// reported and the reading goes on after it.
class Tokenizer
{
public:
    enum Manner {
        Mending, ///< makes the best of everything
        Strict ///< gives T_ERROR for what cannot be told from its own bytes, and reports no dialect
    };

    Tokenizer(const SourceText &source, Findings &findings, Manner manner = Mending);

    Token next();

    /// Goes on at `offset`.
    void restart(int offset);

    /// Makes a word of everything up to a blank, a comma or a closing bracket.
    void extendWord(Token *word);

private:
    int skipBlanks(int offset, int *firstStrayB) const;
    void check(Token *token, int firstStrayB);
    bool mend(Token *token, int firstStrayB);
    bool mendQuoted(Token *token);
    bool mendPlaceholder(Token *token);
    bool mendCharacter(Token *token);
    void mendWord(Token *token);
    bool skipComment(int begin);
    bool skipInvisible(int begin);
    bool takeUnexpected(Token *token);
    bool mendUnterminated(Token *token);
    void endTextAtLine(Token *token);
    void reportStrayB(int offset);

    char at(int offset) const
    {
        return offset < m_source.size() ? m_source.bytes().at(offset) : '\0';
    }
    bool has(int offset, const char *bytes) const;

    const SourceText &m_source;
    Findings &m_findings;
    Manner m_manner;
    std::unique_ptr<JsonLexer> m_lexer;
    int m_base = 0; ///< where the lexer's input begins
};

#endif // TOKENIZER_H
