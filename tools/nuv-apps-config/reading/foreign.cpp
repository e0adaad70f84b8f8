// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/reading/foreign.h"

#include "tools/nuv-apps-config/text/matching.h"

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

bool allMatch(const QList<QByteArray> &lines, const char *pattern)
{
    return lines.size() > 1
        && std::all_of(lines.begin(), lines.end(),
                       [pattern](const QByteArray &line) { return matches(line, pattern); });
}

struct Markup {
    const char *name; ///< null: nothing that is known
    const char *remedy;
};

const char startAnew[] = "the library reads JSON only; `nuv-apps-config template` prints a "
                         "configuration to start from";

// What is around or within a configuration that was copied from elsewhere.
Markup wrapping(const QList<QByteArray> &lines)
{
    const QByteArray &first = lines.first();
    if (matches(first, "^(var|let|const)\\s+\\w+\\s*=") || matches(first, "^module\\.exports\\b")
        || matches(first, "^export\\s+default\\b") || matches(first, "^\\w+\\(\\s*\\{?$"))
        return { "JavaScript", "keep what is from the first { to the last }" };
    if (first.startsWith("```"))
        return { "a block of Markdown", "remove the lines of ```" };
    if (allMatch(lines, "^>"))
        return { "a quotation of a mail", "remove the > at the beginning of each line" };
    if (allMatch(lines, "^\\d+[:.|]?\\s+\\S"))
        return { "a listing with line numbers", "remove the number at the beginning of each line" };
    if (lines.size() > 1 && lines.at(1).startsWith("\\\""))
        return { "JSON with escaped quotes", "write \" for each \\\"" };
    return { nullptr, nullptr };
}

// What the first lines look like.
Markup markup(const QByteArray &bytes)
{
    const QList<QByteArray> lines = firstLines(bytes);
    if (lines.isEmpty())
        return { nullptr, nullptr };
    const Markup wrapped = wrapping(lines);
    if (wrapped.name)
        return wrapped;
    const QByteArray first = lines.first().toLower();
    if (first.startsWith("<!doctype html") || first.startsWith("<html"))
        return { "an HTML page",
                 "a server may have sent it instead of the file; get the file again" };
    if (matches(first, "^<[?!a-z]"))
        return { "XML", startAnew };
    const bool isSection = matches(first, "^\\[[a-z][^\\]{\"]*\\]$");
    if (matches(first, "^[a-z][\\w./-]*\\s*=")
        || (isSection && lines.size() > 1 && matches(lines.at(1), "^[A-Za-z][\\w./-]*\\s*=")))
        return { "an INI file", startAnew };
    if (first == "---" || first.startsWith("%yaml")
        || (matches(first, "^[a-z_][\\w -]*:($|\\s+[^{\\[])") && !first.endsWith(',')))
        return { "YAML", startAnew };
    return { nullptr, nullptr };
}

} // namespace

bool Foreign::report(const QByteArray &bytes, Findings &findings)
{
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
    const Markup found = markup(bytes);
    if (found.name)
        findings.add("other-format", 0, 0,
                     QString(QLatin1String("this is %1")).arg(QLatin1String(found.name)),
                     QLatin1String(found.remedy));
    return found.name;
}
