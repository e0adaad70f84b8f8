#include "tools/nuv-apps-config/foreign.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

struct Beginning {
    const char *bytes;
    const char *name;
};

const Beginning compressed[] = {
    { "\x1f\x8b", "gzip" },
    { "PK\x03\x04", "zip" },
    { "BZh", "bzip2" },
    { "\xfd"
      "7zXZ",
      "xz" },
    { "\x28\xb5\x2f\xfd", "zstd" },
};

const char *compression(const QByteArray &bytes)
{
    for (const Beginning &each : compressed) {
        if (bytes.startsWith(each.bytes))
            return each.name;
    }
    return nullptr;
}

bool isControl(char byte)
{
    return byte >= 0 && byte < ' ' && byte != '\t' && byte != '\n' && byte != '\r';
}

// The zeros at its end are what a power cut leaves of a good file.
bool isBinary(const QByteArray &bytes)
{
    const int mostControls = 20; // one of so many; UTF-16 has one of two
    int size = bytes.size();
    while (size > 0 && bytes.at(size - 1) == '\0')
        --size;
    const QByteArray head = bytes.left(qMin(size, 65536));
    return size == 0
        || std::count_if(head.begin(), head.end(), isControl) * mostControls > head.size()
        || head.startsWith("\xff\xfe") || head.startsWith("\xfe\xff");
}

// The first lines that are neither blank nor a comment.
QList<QByteArray> firstLines(const QByteArray &bytes)
{
    const int most = 3;
    QList<QByteArray> lines;
    for (const QByteArray &line : bytes.left(4096).split('\n')) {
        const QByteArray text = line.trimmed();
        const bool isComment = text.startsWith('#') || text.startsWith(';');
        if (!text.isEmpty() && !isComment && lines.size() < most)
            lines.append(text);
    }
    return lines;
}

bool matches(const QByteArray &line, const char *pattern)
{
    return QRegularExpression(QLatin1String(pattern)).match(QString::fromLatin1(line)).hasMatch();
}

// What the first lines look like; null for nothing that is known.
const char *markup(const QByteArray &bytes)
{
    const QList<QByteArray> lines = firstLines(bytes);
    if (lines.isEmpty())
        return nullptr;
    const QByteArray first = lines.first().toLower();
    if (first.startsWith("<!doctype html") || first.startsWith("<html"))
        return "an HTML page";
    if (matches(first, "^<[?!a-z]"))
        return "XML";
    const bool isSection = matches(first, "^\\[[a-z][^\\]{\"]*\\]$");
    if (matches(first, "^[a-z][\\w./-]*\\s*=")
        || (isSection && lines.size() > 1 && matches(lines.at(1), "^[A-Za-z][\\w./-]*\\s*=")))
        return "an INI file";
    if (first == "---" || first.startsWith("%yaml")
        || (matches(first, "^[a-z_][\\w -]*:($|\\s+[^{\\[])") && !first.endsWith(',')))
        return "YAML";
    return nullptr;
}

} // namespace

bool Foreign::report(const QByteArray &bytes, Findings &findings)
{
    const QString hint = QLatin1String("the library reads JSON only");
    if (const char *const name = compression(bytes)) {
        findings.add("other-format", 0, 0,
                     QLatin1String("this is a compressed file: ") + QLatin1String(name),
                     QLatin1String("unpack it; the library reads plain text"));
        return true;
    }
    if (isBinary(bytes)) {
        findings.add("not-text", 0, 0, QLatin1String("this is a binary file, or one in UTF-16"),
                     QLatin1String("the library reads plain text in one byte per character"));
        return true;
    }
    const char *const name = markup(bytes);
    if (name)
        findings.add("other-format", 0, 0,
                     QString(QLatin1String("this is %1")).arg(QLatin1String(name)), hint);
    return name;
}
