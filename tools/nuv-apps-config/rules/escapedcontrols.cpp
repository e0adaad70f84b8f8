// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/rules/escapedcontrols.h"

#include "tools/nuv-apps-config/tree/edits.h"

#include <QStringList>

#include <cstring>

namespace {

struct Control {
    char letter; ///< after the backslash
    const char *name;
};

const Control controls[] = {
    { 'b', "a backspace" },       { 'f', "a form feed" }, { 'n', "a line feed" },
    { 'r', "a carriage return" }, { 't', "a tab" },
};

// The length of the escape at `at` that gives a control character; 0 for any other. `*meaning` is what
// it gives, as in "\t is a tab".
int controlAt(const QByteArray &bytes, int at, QString *meaning)
{
    const QByteArray escape = bytes.mid(at, 6);
    bool isNumber = false;
    const uint code = escape.mid(2, 4).toUInt(&isNumber, 16);
    if (escape.startsWith("\\u") && isNumber && (code < 0x20 || code == 0x7f)) {
        *meaning = QString::fromLatin1(escape) + QLatin1String(" is a control character");
        return escape.size();
    }
    for (const Control &control : controls) {
        if (escape.at(1) == control.letter) {
            *meaning = QString::fromLatin1(escape.left(2)) + QLatin1String(" is ")
                + QLatin1String(control.name);
            return 2;
        }
    }
    return 0;
}

struct Found {
    int first = -1; ///< where the first one is
    int length = 0;
    QStringList meanings; ///< each once
    QByteArray withBackslashes; ///< the string with a backslash for each instead
};

Found findIn(const QByteArray &bytes)
{
    Found found;
    for (int i = 0; i < bytes.size(); ++i) {
        if (bytes.at(i) != '\\') {
            found.withBackslashes += bytes.at(i);
            continue;
        }
        QString meaning;
        const int length = controlAt(bytes, i, &meaning);
        if (length > 0 && found.first < 0) {
            found.first = i;
            found.length = length;
        }
        if (length > 0 && !found.meanings.contains(meaning))
            found.meanings.append(meaning);
        found.withBackslashes += (length > 0 ? "\\\\" : "\\") + bytes.mid(i + 1, 1);
        ++i;
    }
    return found;
}

bool isEscape(const QByteArray &bytes, int at)
{
    bool isNumber = true;
    if (bytes.at(at + 1) == 'u')
        bytes.mid(at + 2, 4).toUInt(&isNumber, 16);
    return isNumber && std::strchr("\"\\/bfnrtu", bytes.at(at + 1));
}

} // namespace

bool EscapedControls::report(const SourceText &source, const Node &value, Findings &findings)
{
    const QByteArray bytes = source.bytes().mid(value.begin, value.length());
    const Found found = findIn(bytes);
    if (found.first < 0)
        return false;
    Finding &finding =
        findings.add("control-character", value.begin + found.first, found.length,
                     found.meanings.join(QLatin1String(", ")) + QLatin1String(" here"),
                     QLatin1String("a backslash is written \\\\"));
    finding.edit = Edits::replace(value, found.withBackslashes);
    return true;
}

bool EscapedControls::isPlain(const SourceText &source, const Node &value)
{
    const QByteArray bytes = source.bytes().mid(value.begin, value.length());
    for (int i = 0; i + 1 < bytes.size(); ++i) {
        if (static_cast<unsigned char>(bytes.at(i)) < 0x20)
            return false;
        if (bytes.at(i) != '\\')
            continue;
        if (!isEscape(bytes, i))
            return false;
        ++i;
    }
    return true;
}
