#include "program/console.h"

#include "values/passwords.h"

#include <QRegExp>

#include <cstdio>

namespace {

// The one way out. No password of an address passes, whoever made the text.
void write(std::FILE *stream, const QString &text)
{
    std::fputs(Passwords::maskedText(text).toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

} // namespace

void Console::print(const QString &text)
{
    write(stdout, text);
}

void Console::note(const QString &tag, const QString &text)
{
    print(shown(tag) + QLatin1String("  ") + shown(text) + QLatin1Char('\n'));
}

void Console::error(const QString &text)
{
    write(stderr, QLatin1String("nuv-launcher: ") + shown(text) + QLatin1Char('\n'));
}

QString Console::shown(const QString &text)
{
    QString result = text;
    result.replace(QRegExp(QLatin1String("[\\x0000-\\x001f\\x007f-\\x009f]")), QLatin1String("?"));
    return Passwords::maskedText(result);
}
