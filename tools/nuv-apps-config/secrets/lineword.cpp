// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/secrets/lineword.h"

#include "tools/nuv-apps-config/secrets/decodedtext.h"
#include "tools/nuv-apps-config/secrets/secretnames.h"

#include <cstring>

namespace {

bool isMarkByte(char byte)
{
    return byte != '\0' && std::strchr("{}[]:,=;", byte);
}

bool isBlankByte(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r';
}

int endOfText(const QByteArray &bytes, int begin, int end)
{
    for (int at = begin + 1; at < end; ++at) {
        if (bytes.at(at) == '\\')
            ++at;
        else if (bytes.at(at) == '"')
            return at + 1;
    }
    return -1;
}

LineWord wordAt(const QByteArray &bytes, int begin, int end)
{
    LineWord word = { LineWord::Bare, begin, begin + 1, QString() };
    int quote = 0;
    if (isMarkByte(bytes.at(begin))) {
        word.type = LineWord::Mark;
    } else if (bytes.at(begin) == '"') {
        const int textEnd = endOfText(bytes, begin, end);
        word.type = textEnd < 0 ? LineWord::OpenText : LineWord::Text;
        word.end = textEnd < 0 ? end : textEnd;
        quote = 1;
    } else {
        while (word.end < end && bytes.at(word.end) != '"' && !isMarkByte(bytes.at(word.end))
               && !isBlankByte(bytes.at(word.end)))
            ++word.end;
    }
    const int closing = word.type == LineWord::Text ? 1 : 0;
    word.text = DecodedText(bytes, begin + quote, word.end - closing).text();
    return word;
}

bool isPlainValue(const LineWord &word)
{
    return word.type == LineWord::Text || (word.type == LineWord::Bare && word.isNumber());
}

} // namespace

bool LineWord::isNumber() const
{
    bool isOne = false;
    text.toDouble(&isOne);
    return isOne;
}

std::vector<LineWord> LineWord::wordsOf(const QByteArray &bytes, int begin, int end)
{
    std::vector<LineWord> words;
    while (begin < end) {
        if (isBlankByte(bytes.at(begin))) {
            ++begin;
            continue;
        }
        words.push_back(wordAt(bytes, begin, end));
        begin = words.back().end;
    }
    return words;
}

bool LineWord::isMember(const std::vector<LineWord> &words, size_t index)
{
    if (words[index].type != Text || !words[index + 1].isMark(':')
        || !isPlainValue(words[index + 2]))
        return false;
    if (index + 3 == words.size())
        return true;
    const LineWord &next = words[index + 3];
    return next.isMark(',') || next.isMark('}') || next.isMark(']')
        || (next.type == Text && SecretNames::isKnown(next.text));
}
