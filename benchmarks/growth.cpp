// SPDX-License-Identifier: MIT
// Reads and writes documents that grow in one dimension each, for callgrind to count the instructions:
//
//   valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file=FILE growth DIMENSION...
//
// Callgrind makes a dump for every size: "read NAME SIZE" and, where the document is written back, "write
// NAME SIZE". benchmarks/check-growth makes exponents of them. Without a dimension it prints their names.

#include "settings/jsonsettingsformat.h"

#include <QBuffer>
#include <QByteArray>
#include <QList>

#include <cstdio>
#include <functional>
#include <string>
#include <valgrind/callgrind.h>

namespace {

// A document, or a part of one, that somebody can make large.
struct Dimension {
    const char *name;
    std::function<QByteArray(int size)> document;
    int size; ///< the smallest of the three
};

QByteArray repeated(const char *text, int count)
{
    return QByteArray(text).repeated(count);
}

QByteArray string(const char *unit, int count)
{
    return "{\"a\":\"" + repeated(unit, count) + "\"}";
}

QByteArray key(const char *unit, int count)
{
    return "{\"" + repeated(unit, count) + "\":1}";
}

// Numbers from 0 to `count` - 1, in an order that neither ascends nor descends.
int shuffled(int i, int count)
{
    return int(i * 7919LL % count);
}

QByteArray paddedKey(int number)
{
    return "k" + QByteArray::number(number).rightJustified(8, '0');
}

QByteArray object(int count, const std::function<QByteArray(int)> &member)
{
    QByteArray text = "{";
    for (int i = 0; i < count; ++i)
        text += (i ? "," : "") + member(i);
    return text + "}";
}

QByteArray keys(int count, const std::function<int(int)> &number)
{
    return object(count, [&](int i) { return '"' + paddedKey(number(i)) + "\":1"; });
}

QByteArray array(const char *element, int count)
{
    return "{\"a\":[" + QByteArray(element) + ("," + QByteArray(element)).repeated(count - 1)
        + "]}";
}

QByteArray nested(const char *open, const char *innermost, const char *close, int depth)
{
    return repeated(open, depth) + innermost + repeated(close, depth);
}

// Arrays of a few elements, each under a key of its own.
QByteArray arrays(int count)
{
    return object(count, [](int i) { return '"' + paddedKey(i) + "\":[1,2,3]"; });
}

// A long key in front of a deep tree, and another key that has its beginning in common.
QByteArray deepBehindLongKey(int size)
{
    const QByteArray key = "\"" + repeated("k", size);
    return "{" + key + "\":" + nested("{\"a\":", "1", "}", size / 40) + "," + key + "k\":2}";
}

const QList<Dimension> &dimensions()
{
    static const QList<Dimension> all = {
        { "string-of-letters", [](int n) { return string("a", n); }, 16000 },
        { "string-of-latin-1", [](int n) { return string("\xe9", n); }, 16000 },
        { "string-of-\\\"", [](int n) { return string("\\\"", n); }, 8000 },
        { "string-of-\\\\", [](int n) { return string("\\\\", n); }, 8000 },
        { "string-of-\\/", [](int n) { return string("\\/", n); }, 8000 },
        { "string-of-\\b", [](int n) { return string("\\b", n); }, 8000 },
        { "string-of-\\f", [](int n) { return string("\\f", n); }, 8000 },
        { "string-of-\\n", [](int n) { return string("\\n", n); }, 8000 },
        { "string-of-\\r", [](int n) { return string("\\r", n); }, 8000 },
        { "string-of-\\t", [](int n) { return string("\\t", n); }, 8000 },
        { "string-of-\\u", [](int n) { return string("\\u20ac", n); }, 4000 },
        { "string-of-\\u-and-quotes", [](int n) { return string("\\u\"\"\"\"", n); }, 4000 },
        { "strings-of-\\\"", [](int n) { return array("\"\\\"\"", n); }, 2000 },
        { "unterminated-string", [](int n) { return "{\"a\":\"" + repeated("\\\"", n); }, 8000 },
        { "key-of-letters", [](int n) { return key("k", n); }, 16000 },
        { "key-of-\\\"", [](int n) { return key("\\\"", n); }, 8000 },
        { "key-of-\\u", [](int n) { return key("\\u20ac", n); }, 4000 },
        { "key-of-separators", [](int n) { return key("/", n); }, 200 },
        { "ascending-keys", [](int n) { return keys(n, [](int i) { return i; }); }, 2000 },
        { "descending-keys", [](int n) { return keys(n, [n](int i) { return n - i; }); }, 2000 },
        { "shuffled-keys", [](int n) { return keys(n, [n](int i) { return shuffled(i, n); }); },
          2000 },
        { "equal-keys", [](int n) { return keys(n, [](int) { return 1; }); }, 2000 },
        { "equal-keys-with-/", [](int n) { return "{\"x/y\":1" + repeated(",\"x/y\":1", n) + "}"; },
          100 },
        { "array-of-integers", [](int n) { return array("1", n); }, 2000 },
        { "array-of-strings", [](int n) { return array("\"a\"", n); }, 2000 },
        { "array-of-arrays", [](int n) { return array("[]", n); }, 2000 },
        { "array-of-objects", [](int n) { return array("{\"a\":1,\"b\":2}", n); }, 1000 },
        { "array-of-empty-objects", [](int n) { return array("{}", n); }, 2000 },
        { "many-arrays", arrays, 1000 },
        { "depth-of-objects", [](int n) { return nested("{\"a\":", "1", "}", n); }, 200 },
        { "depth-of-empty-objects", [](int n) { return nested("{\"a\":", "{}", "}", n); }, 2000 },
        { "depth-of-arrays", [](int n) { return nested("[", "1", "]", n); }, 100 },
        { "depth-with-values", [](int n) { return nested("{\"a\":1,\"b\":", "1", "}", n); }, 100 },
        { "depth-after-a-long-key", deepBehindLongKey, 8000 },
        { "unclosed-arrays", [](int n) { return repeated("[", n); }, 2000 },
        { "digits-of-an-integer", [](int n) { return "{\"a\":" + repeated("7", n) + "}"; }, 8000 },
        { "digits-of-a-fraction", [](int n) { return "{\"a\":0." + repeated("7", n) + "}"; },
          8000 },
        { "digits-of-an-exponent", [](int n) { return "{\"a\":1e-" + repeated("7", n) + "}"; },
          8000 },
        { "signs-of-a-number", [](int n) { return "{\"a\":" + repeated("-", n) + "}"; }, 8000 },
        { "spaces", [](int n) { return "{" + repeated(" ", n) + "\"a\":1}"; }, 16000 },
        { "line-feeds", [](int n) { return "{" + repeated("\n", n) + "\"a\":1}"; }, 16000 },
        { "letters-of-a-word", [](int n) { return "{\"a\":" + repeated("t", n) + "}"; }, 16000 },
    };
    return all;
}

void dump(const char *action, const char *name, int size)
{
    const std::string title = std::string(action) + ' ' + name + ' ' + std::to_string(size);
    CALLGRIND_DUMP_STATS_AT(title.c_str());
}

void measure(const Dimension &dimension, int size)
{
    const QByteArray document = dimension.document(size);
    QBuffer input;
    input.setData(document);
    input.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    CALLGRIND_TOGGLE_COLLECT;
    readJsonSettings(input, map);
    CALLGRIND_TOGGLE_COLLECT;
    dump("read", dimension.name, size);
    if (map.isEmpty())
        return;
    QByteArray text;
    QBuffer output(&text);
    output.open(QIODevice::WriteOnly);
    CALLGRIND_TOGGLE_COLLECT;
    writeJsonSettings(output, map);
    CALLGRIND_TOGGLE_COLLECT;
    dump("write", dimension.name, size);
}

void measureAllSizes(const Dimension &dimension)
{
    for (int factor = 1; factor <= 16; factor *= 4)
        measure(dimension, dimension.size * factor);
}

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char **argv)
{
    qInstallMessageHandler(ignoreMessage);
    for (const Dimension &dimension : dimensions()) {
        if (argc == 1)
            std::printf("%s\n", dimension.name);
        for (int i = 1; i < argc; ++i) {
            if (qstrcmp(argv[i], dimension.name) == 0)
                measureAllSizes(dimension);
        }
    }
    return 0;
}
