// SPDX-License-Identifier: MIT
// The lexer alone, far after the first error, where no parser gets. Every token takes at least a byte,
// nothing goes back, and the value has the type of its token.

#include "fuzz/fuzztarget.h"
#include "json/jsonlexer.h"

static bool hasTypeOf(int token, const QVariant &value)
{
    switch (token) {
    case T_STRING:
        return value.userType() == QMetaType::QString;
    case T_NUMBER:
        return value.userType() == QMetaType::Int || value.userType() == QMetaType::LongLong
            || value.userType() == QMetaType::Double;
    default:
        return !value.isValid();
    }
}

static void checkToken(JsonLexer &lexer, int size)
{
    const int pos = lexer.pos();
    const int line = lexer.line();
    const int token = lexer.nextToken();
    Fuzz::require(token >= T_END_OF_FILE && token <= T_ERROR, "the token is one of the table");
    Fuzz::require(hasTypeOf(token, lexer.value()), "the value has the type of its token");
    Fuzz::require(lexer.pos() >= pos && lexer.pos() <= size, "the position stays in the input");
    Fuzz::require(lexer.line() >= line && lexer.line() - line <= lexer.pos() - pos,
                  "every line takes a byte");
    Fuzz::require(token == T_END_OF_FILE || token == T_ERROR || lexer.pos() > pos,
                  "a token takes a byte");
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const FuzzInput input(data, size);
    const QByteArray bytes = input.bytes();
    // A byte that begins no token is left where it is, so the lexer is made anew after it.
    for (int begin = 0; begin <= bytes.size();) {
        const QByteArray rest =
            QByteArray::fromRawData(bytes.constData() + begin, bytes.size() - begin);
        JsonLexer lexer(rest);
        int before = -1;
        while (lexer.pos() != before && lexer.pos() < rest.size()) {
            before = lexer.pos();
            checkToken(lexer, rest.size());
        }
        begin += lexer.pos() + 1;
    }
    return 0;
}
