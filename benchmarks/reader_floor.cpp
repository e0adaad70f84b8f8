#include "benchmarks/readers.h"

#include "benchmarks/treebuilder.h"
#include "json/jsongrammar.h"
#include "json/jsonlexer.h"

#include <vector>

namespace {

struct Token {
    int code;
    bool isKey;
    QVector<ushort> text; ///< of a string
    QVariant value; ///< of a number
};

std::vector<Token> tokensOf(const QByteArray &document)
{
    std::vector<Token> tokens;
    JsonLexer lexer(document);
    for (int code = lexer.nextToken(); code != T_END_OF_FILE; code = lexer.nextToken()) {
        if (code == T_COLON)
            tokens.back().isKey = true;
        if (code == T_COLON || code == T_COMMA)
            continue;
        Token token = { code, false, QVector<ushort>(), QVariant() };
        if (code == T_STRING) {
            for (const QChar c : lexer.value().toString())
                token.text.append(c.unicode());
        } else {
            token.value = lexer.value();
        }
        tokens.push_back(token);
    }
    return tokens;
}

void build(TreeBuilder &builder, const Token &token)
{
    QVariant value;
    switch (token.code) {
    case T_LBRACE:
        builder.openObject();
        return;
    case T_LBRACKET:
        builder.openArray();
        return;
    case T_RBRACE:
    case T_RBRACKET:
        builder.close();
        return;
    case T_STRING: {
        const QString text(reinterpret_cast<const QChar *>(token.text.constData()),
                           token.text.size());
        if (token.isKey) {
            builder.key(text);
            return;
        }
        value = text;
        break;
    }
    case T_NUMBER:
        value = token.value;
        break;
    case T_FALSE:
    case T_TRUE:
        value = token.code == T_TRUE;
        break;
    }
    builder.value(value);
}

} // namespace

Readers::Reading Readers::prepareFloor(const QByteArray &document)
{
    const std::vector<Token> tokens = tokensOf(document);
    return [tokens]() {
        TreeBuilder builder;
        for (const Token &token : tokens)
            build(builder, token);
        return builder.take();
    };
}
