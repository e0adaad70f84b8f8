// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/columns.h"

#include <QByteArray>
#include <QVector>

#include <algorithm>
#include <clocale>
#include <cwchar>

#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

bool isAscii(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

// The C library knows the widths where its locale has the characters, whatever the user's is. It stays:
// to make one for each character would take longer than all else. Where there is none, the user's stays.
locale_t utf8Locale()
{
    static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
}

} // namespace

int Columns::of(const QString &text)
{
    if (isAscii(text))
        return text.size();
    const locale_t previous = ::uselocale(utf8Locale());
    int columns = 0;
    for (const uint character : text.toUcs4()) {
        const int width = ::wcwidth(wchar_t(character));
        columns += width < 0 ? 1 : width;
    }
    ::uselocale(previous);
    return columns;
}

int Columns::ofTerminal()
{
    const int given = qgetenv("COLUMNS").toInt();
    winsize size = {};
    ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size); // of what is no terminal it stays zero
    return given > 0 ? given : size.ws_col;
}
