// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/secrets/decodedtext.h"

#include <cstring>

namespace {

const int EscapeSize = 6; ///< of \u and four digits

// The library takes the four bytes whatever they are. One that is no digit counts as 0.
ushort numbered(const char *digits)
{
    ushort code = 0;
    for (int i = 0; i < 4; ++i) {
        bool isDigit = false;
        const ushort digit = QByteArray(digits + i, 1).toUShort(&isDigit, 16);
        code = ushort(code << 4 | (isDigit ? digit : 0));
    }
    return code;
}

QChar named(char letter)
{
    const char letters[] = "bfnrt";
    const char characters[] = "\b\f\n\r\t";
    const char *const found = letter ? std::strchr(letters, letter) : nullptr;
    return QLatin1Char(found ? characters[found - letters] : letter);
}

} // namespace

DecodedText::DecodedText(const QByteArray &bytes, int begin, int end)
{
    m_text.reserve(end - begin);
    m_offsets.reserve(size_t(end - begin) + 1);
    while (begin < end) {
        m_offsets.push_back(begin);
        if (bytes.at(begin) != '\\' || begin + 1 == end) {
            m_text += QLatin1Char(bytes.at(begin++));
            continue;
        }
        const bool isNumber = bytes.at(begin + 1) == 'u' && begin + EscapeSize <= end;
        m_text +=
            isNumber ? QChar(numbered(bytes.constData() + begin + 2)) : named(bytes.at(begin + 1));
        begin += isNumber ? EscapeSize : 2;
    }
    m_offsets.push_back(end);
}
