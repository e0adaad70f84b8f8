// SPDX-License-Identifier: MIT
#include "program/console.h"

#include "values/passwords.h"

#include <QRegExp>

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The one way out. No password of an address passes, whoever made the text.
void write(std::FILE *stream, const QString &text)
{
    std::fputs(Passwords::maskedText(text).toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

// The variable says which stream leads to the journal: a program that was started by another one may have
// inherited the variable, but not the stream.
bool errorsGoToTheJournal()
{
    struct stat file;
    if (fstat(STDERR_FILENO, &file) != 0)
        return false;
    const QByteArray identity =
        QByteArray::number(quint64(file.st_dev)) + ':' + QByteArray::number(quint64(file.st_ino));
    return qgetenv("JOURNAL_STREAM") == identity;
}

/// The priority is one of the kernel's, as it begins a line of the journal.
void writeLine(const char *priority, const QString &text)
{
    static const bool isJournal = errorsGoToTheJournal();
    write(stderr,
          QLatin1String(isJournal ? priority : "") + QLatin1String("nuv-launcher: ")
              + Console::shown(text) + QLatin1Char('\n'));
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
    writeLine("<3>", text);
}

void Console::warning(const QString &text)
{
    writeLine("<4>", text);
}

QString Console::shown(const QString &text)
{
    QString result = text;
    result.replace(QRegExp(QLatin1String("[\\x0000-\\x001f\\x007f-\\x009f]")), QLatin1String("?"));
    return Passwords::maskedText(result);
}
