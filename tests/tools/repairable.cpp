// SPDX-License-Identifier: MIT
#include "tests/tools/repairable.h"

#include <QRegularExpression>

namespace {

int below(std::mt19937 &engine, int limit)
{
    return int(engine() % static_cast<unsigned long>(limit));
}

QRegularExpressionMatch match(const QByteArray &line, const char *pattern)
{
    return QRegularExpression(QLatin1String(pattern)).match(QString::fromLatin1(line));
}

// Replaces what the first group of the pattern matches.
bool replace(QByteArray *line, const char *pattern, const QByteArray &by)
{
    const QRegularExpressionMatch found = match(*line, pattern);
    if (!found.hasMatch())
        return false;
    line->replace(found.capturedStart(1), found.capturedLength(1), by);
    return true;
}

QByteArray captured(const QByteArray &line, const char *pattern)
{
    return match(line, pattern).captured(1).toLatin1();
}

const char Member[] = "^\\s*(\"\\w+\": (\"[^\"]*\"|[\\w.-]+),?)\r?$";
const char Key[] = "^\\s*\"(\\w+)\":";
const char PlainString[] = ": (\"[^\"\\\\']*\"),?\r?$";

// A member and its end of line.
bool isMember(const QByteArray &line)
{
    return match(line, Member).hasMatch();
}

bool trailingComma(QByteArray *line, std::mt19937 &)
{
    return replace(line, "([\"}\\]\\w])\r?$", captured(*line, "([\"}\\]\\w])\r?$") + ',');
}

bool extraComma(QByteArray *line, std::mt19937 &)
{
    return replace(line, "[\"}\\]\\w](,)\r?$", ",,");
}

bool missingComma(QByteArray *line, std::mt19937 &)
{
    return replace(line, "[\"}\\]\\w](,)\r?$", "");
}

bool semicolon(QByteArray *line, std::mt19937 &)
{
    return replace(line, "[\"}\\]\\w](,)\r?$", ";");
}

bool leadingComma(QByteArray *line, std::mt19937 &)
{
    return replace(line, "^(\\s*)\"Tag\"", captured(*line, "^(\\s*)\"Tag\"") + ", ");
}

bool singleQuotes(QByteArray *line, std::mt19937 &engine)
{
    const QByteArray string = captured(*line, PlainString);
    const char quote = "'`"[below(engine, 2)];
    return string.size() > 1
        && replace(line, PlainString, quote + string.mid(1, string.size() - 2) + quote);
}

bool typographicQuotes(QByteArray *line, std::mt19937 &)
{
    const QByteArray string = captured(*line, PlainString);
    return string.size() > 1
        && replace(line, PlainString,
                   "\xe2\x80\x9c" + string.mid(1, string.size() - 2) + "\xe2\x80\x9d");
}

bool quoteTwice(QByteArray *line, std::mt19937 &)
{
    return replace(line, ": (\")[^\"]", "\"\"");
}

bool keyInSingleQuotes(QByteArray *line, std::mt19937 &)
{
    return isMember(*line) && replace(line, "^\\s*(\"\\w+\"):", '\'' + captured(*line, Key) + '\'');
}

bool keyWithoutQuotes(QByteArray *line, std::mt19937 &)
{
    return replace(line, "^\\s*(\"\\w+\"):", captured(*line, Key));
}

bool keyWithoutItsFirstQuote(QByteArray *line, std::mt19937 &)
{
    return isMember(*line) && replace(line, "^\\s*(\")[A-Z]\\w+\":", "");
}

bool keyWithoutItsLastQuote(QByteArray *line, std::mt19937 &)
{
    return isMember(*line) && replace(line, "^\\s*\"[A-Z]\\w+(\"):", "");
}

bool wordWithoutQuotes(QByteArray *line, std::mt19937 &)
{
    return replace(line, "\"Tag\": (\"\\w+\")", captured(*line, "\"Tag\": \"(\\w+)\""));
}

bool missingColon(QByteArray *line, std::mt19937 &)
{
    return isMember(*line) && replace(line, "\"\\w+\"(:)", "");
}

bool equalsSign(QByteArray *line, std::mt19937 &)
{
    return isMember(*line) && replace(line, "\"\\w+\"(:)", " =");
}

bool keywordInAnotherCase(QByteArray *line, std::mt19937 &engine)
{
    const char *const spellings[][3] = { { "True", "TRUE", "yes" }, { "False", "FALSE", "off" } };
    const QByteArray word = captured(*line, ": (true|false)");
    return !word.isEmpty()
        && replace(line, ": (true|false)", spellings[word == "false"][below(engine, 3)]);
}

bool nullOfOthers(QByteArray *line, std::mt19937 &engine)
{
    const char *const spellings[] = { "None", "NULL", "undefined", "nil" };
    return replace(line, ": (null)", spellings[below(engine, 4)]);
}

bool keywordWithASlip(QByteArray *line, std::mt19937 &)
{
    return replace(line, ": (true)", "tru") || replace(line, ": (false)", "flase");
}

bool byteOrderMark(QByteArray *line, std::mt19937 &)
{
    return replace(line, "^(\\{)", "\xef\xbb\xbf{");
}

// At the end of any line.
bool commentBehind(QByteArray *line, std::mt19937 &engine)
{
    const char *const comments[] = { " // \"Url\": {", "  # it's so", " /* , ] */",
                                     " <!-- old -->",  " //",         "\t// gr\xc3\xbc\xc3\x9f" };
    const bool hasReturn = line->endsWith('\r');
    line->chop(hasReturn);
    *line += comments[below(engine, 6)];
    *line += hasReturn ? "\r" : "";
    return true;
}

bool commentInFront(QByteArray *line, std::mt19937 &engine)
{
    const char *const comments[] = { "/* \"a\" */ ", "// b\n", "# c\n# d\n", "/* e\n * f\n */\n" };
    const int blanks = match(*line, "^\\s*").capturedLength();
    line->insert(blanks, comments[below(engine, 4)]);
    return true;
}

bool commentBehindTheColon(QByteArray *line, std::mt19937 &)
{
    return isMember(*line) && replace(line, "\":( )", " /* of the room */ ");
}

bool keyInAnotherCase(QByteArray *line, std::mt19937 &engine)
{
    const QByteArray key = captured(*line, Key);
    if (key.startsWith('_'))
        return false;
    const QByteArray spellings[] = { key.toLower(), key.toUpper(),
                                     key.left(1).toLower() + key.mid(1) };
    return replace(line, "^\\s*(\"\\w+\"):", '"' + spellings[below(engine, 3)] + '"');
}

bool keyWithUnderscores(QByteArray *line, std::mt19937 &)
{
    QString key = QString::fromLatin1(captured(*line, Key));
    if (key.startsWith(QLatin1Char('_')))
        return false;
    key.replace(QRegularExpression(QLatin1String("([a-z])([A-Z])")), QLatin1String("\\1_\\2"));
    return replace(line, "^\\s*(\"\\w+\"):", '"' + key.toLower().toLatin1() + '"');
}

// A letter too few or two that changed places, inside of a long key.
bool keyWithASlip(QByteArray *line, std::mt19937 &engine)
{
    QByteArray key = captured(*line, Key);
    if (key.size() < 8 || key.startsWith('_'))
        return false;
    const int at = 2 + below(engine, key.size() - 5);
    if (below(engine, 2) == 0)
        key.remove(at, 1);
    else
        std::swap(key.data()[at], key.data()[at + 1]);
    return replace(line, "^\\s*(\"\\w+\"):", '"' + key + '"');
}

bool switchAsString(QByteArray *line, std::mt19937 &engine)
{
    const char *const spellings[][3] = { { "\"true\"", "\"Yes\"", "1" },
                                         { "\"false\"", "\"OFF\"", "0" } };
    const QByteArray word = captured(*line, ": (true|false)");
    return !word.isEmpty()
        && replace(line, ": (true|false)", spellings[word == "false"][below(engine, 3)]);
}

bool numberAsString(QByteArray *line, std::mt19937 &)
{
    const char number[] = "\"(?:Scale|WindowOpacity|RemoteInspectorPort)\": ([0-9.]+)";
    return replace(line, number, '"' + captured(*line, number) + '"');
}

bool zerosInFront(QByteArray *line, std::mt19937 &)
{
    const char number[] = "\": ([0-9.]+),?\r?$";
    const QByteArray digits = captured(*line, number);
    return !digits.isEmpty() && !line->contains("WindowOpacity")
        && replace(line, number, "00" + digits);
}

bool plusInFront(QByteArray *line, std::mt19937 &)
{
    const char number[] = "\": ([0-9.]+),?\r?$";
    return replace(line, number, '+' + captured(*line, number));
}

bool noZeroBeforeThePoint(QByteArray *line, std::mt19937 &)
{
    return replace(line, ": (0)\\.", "");
}

bool decimalComma(QByteArray *line, std::mt19937 &)
{
    return replace(line, "\"Scale\": [0-9]+(\\.)", ",");
}

bool hexadecimal(QByteArray *line, std::mt19937 &)
{
    const char port[] = "\"RemoteInspectorPort\": ([0-9]+)";
    const QByteArray digits = captured(*line, port);
    return !digits.isEmpty() && replace(line, port, "0x" + QByteArray::number(digits.toInt(), 16));
}

bool groupedDigits(QByteArray *line, std::mt19937 &)
{
    const char quota[] = "QuotaSize\": ([0-9]+)";
    const QByteArray digits = captured(*line, quota);
    return digits.size() == 7
        && replace(line, quota, digits.left(1) + '_' + digits.mid(1, 3) + '_' + digits.mid(4));
}

bool percentage(QByteArray *line, std::mt19937 &engine)
{
    const char factor[] = "\"(?:Scale|WindowOpacity)\": ([0-9.]+)";
    const QByteArray digits = captured(*line, factor);
    const int hundredths = qRound(digits.toDouble() * 100);
    return hundredths >= 25
        && replace(line, factor,
                   QByteArray::number(hundredths) + (below(engine, 2) == 0 ? "%" : ""));
}

bool singleBackslashes(QByteArray *line, std::mt19937 &)
{
    if (!line->contains("\\\\"))
        return false;
    line->replace("\\\\", "\\");
    return true;
}

bool rawLetters(QByteArray *line, std::mt19937 &)
{
    if (!line->contains("\\u"))
        return false;
    line->replace("\\ud83d\\ude00", "\xf0\x9f\x98\x80").replace("\\u00f6", "\xc3\xb6");
    line->replace("\\u20ac", "\xe2\x82\xac");
    return true;
}

bool noBreakSpace(QByteArray *line, std::mt19937 &)
{
    return isMember(*line) && replace(line, "\":( )", "\xc2\xa0");
}

bool loneB(QByteArray *line, std::mt19937 &)
{
    return replace(line, "[{}\\[\\]],?()\r?$", " b ");
}

QByteArray anyOf(std::mt19937 &engine, const QList<QByteArray> &all)
{
    return all.at(below(engine, all.size()));
}

QByteArray application(std::mt19937 &engine, int number)
{
    const QByteArray tag = "\"Tag\": \"app" + QByteArray(1, char('a' + number)) + '"';
    const QList<QByteArray> others = {
        "\"Scale\": " + anyOf(engine, { "1.25", "1.5", "2", "0.75", "10" }),
        "\"WindowOpacity\": " + anyOf(engine, { "0.5", "0.25", "1", "0" }),
        "\"UseWebGL\": true",
        "\"Frameless\": false",
        "\"UserAgent\": \"B\\u00f6x/\\u20ac \\ud83d\\ude00\"",
        "\"UserAgent\": \"Box/1.0 (x, y; z)\"",
        "\"HttpProxy\": \"usr:word@proxy.example:8080\"",
        "\"RemoteInspectorPort\": 9222",
        "\"UseOfflineStorageDatabase\": true",
        "\"OfflineStorageDefaultQuotaSize\": 5242880",
        "\"UserScript\": \"C:\\\\tv\\\\user\\\\new.js\"",
        "\"ShowScrollbar\": null",
        "\"_comment\": \"{ [ , // ' : ] }\"",
        "\"StartMaximized\": true",
        "\"Certificate\": {\n\"Path\": \"D:\\\\certs\\\\box.pem\",\n\"PassPhrase\": \"correct "
        "horse\"\n}",
        "\"GrantBroadcastAccessRightDomains\": [\n{\n\"Domain\": \"a.example\"\n},\n{\n\"Domain\": "
        "\"b.example\"\n}\n]",
    };
    QList<QByteArray> members = { tag, "\"Url\": \"http://tv.example/\"" };
    QList<QByteArray> keys;
    for (int i = below(engine, 7); i > 0; --i) {
        const QByteArray member = anyOf(engine, others);
        const QByteArray key = member.left(member.indexOf(':'));
        if (keys.contains(key))
            continue;
        keys.append(key);
        members.append(member);
    }
    return "{\n" + members.join(",\n") + "\n}";
}

QByteArray indented(const QByteArray &text, const QByteArray &step, const QByteArray &end)
{
    QByteArray result;
    int depth = 0;
    for (const QByteArray &line : text.split('\n')) {
        if (line.startsWith('}') || line.startsWith(']'))
            --depth;
        result += step.repeated(depth) + line + end;
        if (line.endsWith('{') || line.endsWith('['))
            ++depth;
    }
    return result;
}

} // namespace

const QList<Repairable::Kind> &Repairable::kinds()
{
    static const QList<Kind> all = {
        { "a comma after the last entry", trailingComma },
        { "two commas", extraComma },
        { "no comma", missingComma },
        { "a semicolon for a comma", semicolon },
        { "a comma before the first entry", leadingComma },
        { "single quotes", singleQuotes },
        { "typographic quotes", typographicQuotes },
        { "a quote that was typed twice", quoteTwice },
        { "a key in single quotes", keyInSingleQuotes },
        { "a key without quotes", keyWithoutQuotes },
        { "a key without its first quote", keyWithoutItsFirstQuote },
        { "a key without its last quote", keyWithoutItsLastQuote },
        { "a string without quotes", wordWithoutQuotes },
        { "no colon", missingColon },
        { "an equals sign for a colon", equalsSign },
        { "a keyword in another case", keywordInAnotherCase },
        { "the null of another language", nullOfOthers },
        { "a keyword with a slip", keywordWithASlip },
        { "a byte-order mark", byteOrderMark },
        { "a comment after an entry", commentBehind },
        { "a comment before an entry", commentInFront },
        { "a comment before a value", commentBehindTheColon },
        { "a key in another case", keyInAnotherCase },
        { "a key with underscores", keyWithUnderscores },
        { "a key with a slip", keyWithASlip },
        { "a switch as a string or a number", switchAsString },
        { "a number as a string", numberAsString },
        { "zeros in front of a number", zerosInFront },
        { "a plus in front of a number", plusInFront },
        { "no zero before the point", noZeroBeforeThePoint },
        { "a decimal comma", decimalComma },
        { "a hexadecimal port", hexadecimal },
        { "grouped digits", groupedDigits },
        { "a factor in percent", percentage },
        { "single backslashes in a path", singleBackslashes },
        { "letters outside of ASCII", rawLetters },
        { "a no-break space", noBreakSpace },
        { "a lone b", loneB },
    };
    return all;
}

QByteArray Repairable::configuration(std::mt19937 &engine)
{
    QList<QByteArray> applications;
    for (int i = 1 + below(engine, 4); i > 0; --i)
        applications.append(application(engine, applications.size()));
    const QByteArray text = "{\n\"Global\": {\n\"Version\": 1,\n\"RemoteInspectorPort\": 9222\n},\n"
                            "\"Applications\": [\n"
        + applications.join(",\n") + "\n]\n}";
    const QByteArray step = anyOf(engine, { "    ", "  ", "\t", "" });
    return indented(text, step, below(engine, 4) == 0 ? "\r\n" : "\n");
}
