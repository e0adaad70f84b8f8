// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/secrets/decodedtext.h"

#include <cstring>

namespace {

const int EscapeSize = 6; ///< of \u and four digits

// The library takes two digits at a time, whatever they are: a sign or a blank may be one of them.
int numberedByte(const char *digits)
{
    return QByteArray(digits, 2).toInt(nullptr, 16) & 0xff;
}

QChar named(char letter)
{
    const char letters[] = "bfnrt";
    const char characters[] = "\b\f\n\r\t";
    const char *const found = std::strchr(letters, letter);
    return QLatin1Char(found ? characters[found - letters] : letter);
}

} // namespace

DecodedText::DecodedText(const QByteArray &bytes, int begin, int end)
{
    while (begin < end) {
        m_offsets.push_back(begin);
        if (bytes.at(begin) != '\\' || begin + 1 == end) {
            m_text += QLatin1Char(bytes.at(begin++));
            continue;
        }
        const char *const escape = bytes.constData() + begin + 1;
        const bool isNumber = *escape == 'u' && begin + EscapeSize <= end;
        m_text += isNumber ? QChar(numberedByte(escape + 1) << 8 | numberedByte(escape + 3))
                           : named(*escape);
        begin += isNumber ? EscapeSize : 2;
    }
    m_offsets.push_back(end);
}
