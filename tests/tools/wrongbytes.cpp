// SPDX-License-Identifier: MIT
#include "tests/tools/wrongbytes.h"

#include "tests/tools/mistakes.h"

#include <QJsonDocument>

#include <algorithm>
#include <random>

namespace {

using WrongBytes::Slip;

// What a finger or a wrong key gives.
const char letters[] = "{}[],:\"';.=-+/\\#_|b1 xe\n\t\xe4";

bool isStructural(char byte)
{
    return byte != '\0' && QByteArray("{}[],:\"").contains(byte);
}

Slip deleted(const QByteArray &clean, int at)
{
    return Slip { QByteArray("delete ") + clean.at(at), QByteArray(clean).remove(at, 1), at };
}

Slip inserted(const QByteArray &clean, int at, char letter)
{
    return Slip { QByteArray("insert ") + letter, QByteArray(clean).insert(at, letter), at };
}

Slip replaced(const QByteArray &clean, int at, char letter)
{
    QByteArray bytes = clean;
    bytes[at] = letter;
    return Slip { QByteArray("replace ") + clean.at(at) + " by " + letter, bytes, at };
}

Slip swapped(const QByteArray &clean, int at)
{
    QByteArray bytes = clean;
    std::swap(bytes.data()[at], bytes.data()[at + 1]);
    return Slip { QByteArray("swap ") + clean.mid(at, 2), bytes, at };
}

Slip anySlip(const QByteArray &clean, std::mt19937 &engine)
{
    const int at = int(engine() % static_cast<unsigned>(clean.size() - 1));
    const char letter = letters[engine() % (sizeof letters - 1)];
    switch (engine() % 5) {
    case 0:
        return deleted(clean, at);
    case 1:
        return inserted(clean, at, letter);
    case 2:
        return inserted(clean, at, clean.at(at));
    case 3:
        return swapped(clean, at);
    default:
        return replaced(clean, at, letter);
    }
}

QByteArray braceOnItsOwnLine(QByteArray bytes)
{
    for (const char *opening : { "{\n", "[\n" }) {
        for (int at = bytes.indexOf(opening); at >= 0; at = bytes.indexOf(opening, at + 1)) {
            const int line = bytes.lastIndexOf('\n', at) + 1;
            int text = line;
            while (bytes.at(text) == ' ')
                ++text;
            if (text == at)
                continue;
            const QByteArray indentation = bytes.mid(line, text - line);
            bytes.insert(at, '\n' + indentation);
            at += 1 + indentation.size();
        }
    }
    return bytes;
}

} // namespace

const QList<WrongBytes::Layout> &WrongBytes::layouts()
{
    static const QList<Layout> all = [] {
        const QByteArray plain = Mistakes::configurations().at(1);
        const QJsonDocument document = QJsonDocument::fromJson(plain);
        QByteArray windows = Mistakes::configurations().at(0);
        windows.replace("\n", "\r\n");
        QByteArray tabs = document.toJson(QJsonDocument::Indented);
        tabs.replace("    ", "\t");
        return QList<Layout> {
            { "short", Mistakes::configurations().at(0) },
            { "two spaces", plain },
            { "long", Mistakes::configurations().at(2) },
            { "each brace on a line of its own",
              braceOnItsOwnLine(document.toJson(QJsonDocument::Indented)) },
            { "tabs", tabs },
            { "ends of lines as of Windows", windows },
            { "one line", document.toJson(QJsonDocument::Compact) },
            { "without indentation", QByteArray(plain).replace("  ", "") },
        };
    }();
    return all;
}

QList<Slip> WrongBytes::some(const QByteArray &clean, unsigned seed, int count)
{
    std::mt19937 engine(seed);
    QList<Slip> slips;
    bool isInString = false;
    const char structural[] = "{}[],:\"";
    for (int at = 0; at < clean.size() - 1; ++at) {
        const char byte = clean.at(at);
        if (isStructural(byte) && (!isInString || byte == '"')) {
            slips.append(deleted(clean, at));
            slips.append(inserted(clean, at, byte));
            slips.append(replaced(clean, at, structural[engine() % 7]));
            slips.append(swapped(clean, at));
        }
        if (byte == '"')
            isInString = !isInString;
    }
    for (int i = 0; i < count; ++i)
        slips.append(anySlip(clean, engine));
    std::shuffle(slips.begin(), slips.end(), engine);
    return slips.mid(0, count);
}

bool WrongBytes::breakLine(QByteArray *line, std::mt19937 &engine)
{
    const int colon = line->indexOf("\": ");
    if (colon < 0 || !line->endsWith(','))
        return false;
    switch (engine() % 5) {
    case 0: // the closing quote of the key
        line->remove(colon, 1);
        break;
    case 1:
        line->remove(colon + 1, 1);
        break;
    case 2:
        line->chop(1);
        break;
    case 3:
        line->append(',');
        break;
    default: // the opening quote of the key
        line->remove(line->indexOf('"'), 1);
    }
    return true;
}
