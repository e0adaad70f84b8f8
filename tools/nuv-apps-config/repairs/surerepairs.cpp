// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/repairs/surerepairs.h"

#include "tools/nuv-apps-config/repairs/commentkeys.h"
#include "tools/nuv-apps-config/findings/rules.h"
#include "tools/nuv-apps-config/text/utf8.h"
#include "tools/nuv-apps-config/repairs/valueplaces.h"
#include "tools/nuv-apps-config/text/matching.h"
#include "tools/nuv-apps-config/tree/edits.h"

#include <QFileInfo>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <set>

namespace {

typedef std::vector<Edit> Changes;

bool isOneOf(const QByteArray &word, const char *words)
{
    return QString(QLatin1String(words))
        .split(QLatin1Char(' '))
        .contains(QString::fromLatin1(word));
}

bool isNumberKind(const Property &property)
{
    return property.kind == Kind::Number || property.kind == Kind::Integer
        || property.kind == Kind::Port || property.kind == Kind::Version;
}

bool isKeyOfLibrary(const QByteArray &key)
{
    const std::vector<Property> &all = Properties::all();
    return std::any_of(all.begin(), all.end(),
                       [&](const Property &property) { return key == property.key; });
}

/// Says of a finding whether what it proposes is the only thing that can have been meant.
class Judge
{
public:
    Judge(const Analysis &analysis, const DeviceFiles &files)
        : m_bytes(analysis.source.bytes()),
          m_files(files),
          m_places(analysis.document),
          m_isUtf8(Utf8::isValid(m_bytes.constData(), m_bytes.size()))
    {
    }

    Changes asProposed(const Finding &finding) const;
    Changes comma(const Finding &finding) const;
    Changes lastComma(const Finding &finding) const;
    Changes colon(const Finding &finding) const;
    Changes quotes(const Finding &finding) const;
    Changes quoteTwice(const Finding &finding) const;
    Changes missingQuote(const Finding &finding) const;
    Changes strayB(const Finding &finding) const;
    Changes key(const Finding &finding) const;
    Changes word(const Finding &finding) const;
    Changes keyword(const Finding &finding) const;
    Changes number(const Finding &finding) const;
    Changes letters(const Finding &finding) const;
    Changes backslashes(const Finding &finding) const;
    Changes name(const Finding &finding) const;
    Changes kind(const Finding &finding) const;
    Changes tag(const Finding &finding) const;
    Changes percentage(const Finding &finding) const;

    SureRepair repairWith(const Finding &finding, const Changes &edits, bool hidesValue) const;

private:
    QByteArray given(const Finding &finding) const
    {
        return m_bytes.mid(finding.offset, finding.length);
    }
    const Property *propertyAt(const Finding &finding) const
    {
        const ReadMember *const read = m_places.at(finding.offset);
        return read ? read->property : nullptr;
    }
    bool isFollowedBy(int end, const char *signs) const;

    const QByteArray &m_bytes;
    const DeviceFiles &m_files;
    ValuePlaces m_places;
    bool m_isUtf8;
};

Changes Judge::asProposed(const Finding &finding) const
{
    const Edit &edit = finding.edit;
    const bool isChange = m_bytes.mid(edit.offset, edit.removed) != edit.inserted;
    return isChange ? Changes { edit } : Changes();
}

// Whether the entry or the key really ends there, and what was taken for its end is not a part of it.
bool Judge::isFollowedBy(int end, const char *signs) const
{
    const int first = end;
    while (end < m_bytes.size() && (m_bytes.at(end) == ' ' || m_bytes.at(end) == '\t'))
        ++end;
    if (end == m_bytes.size())
        return true;
    const char next = m_bytes.at(end);
    const bool isComment = end > first && (next == '/' || next == '#');
    return isComment || (next != '\0' && std::strchr(signs, next));
}

// It belongs right after the entry. One sign instead of another is sure for the semicolon only. A string
// with a comma at its edge may hold the one that is missing.
Changes Judge::comma(const Finding &finding) const
{
    if (given(finding) == ";")
        return { Edit { finding.offset, 1, "," } };
    const bool isMissing = finding.edit.removed == 0 && finding.edit.inserted == ",";
    const QByteArray before = m_bytes.mid(qMax(0, finding.offset - 2), 2);
    const QByteArray after = m_bytes.mid(finding.edit.offset, 2);
    const bool isBetween = matches(before.right(1), "[\\w\"}\\]]") && matches(after, "^[\"{\\[]");
    if (!isMissing || !isBetween || before == ",\"" || after == "\",")
        return Changes();
    return { Edit { finding.offset, 0, "," } };
}

// Nothing but blanks and whole comments may follow it: in a comment that nobody ended there may be an
// entry.
Changes Judge::lastComma(const Finding &finding) const
{
    const QByteArray rest = m_bytes.mid(finding.offset + 1).trimmed();
    const bool isOpen = (rest.startsWith("/*") && !rest.contains("*/"))
        || (rest.startsWith("<!") && !rest.contains("-->"));
    return isOpen ? Changes() : asProposed(finding);
}

// One instead of another sign is sure for the equals sign only.
Changes Judge::colon(const Finding &finding) const
{
    if (given(finding) == "=")
        return { Edit { finding.offset, 1, ":" } };
    const bool isMissing = finding.edit.removed == 0 && finding.edit.inserted == ":";
    const bool isAfterKey = m_bytes.at(finding.offset - 1) == '"';
    const bool isBeforeValue = matches(m_bytes.mid(finding.edit.offset, 6),
                                       "^(\"[^:]|[0-9{\\[-]|true\\b|false\\b|null\\b)");
    return isMissing && isAfterKey && isBeforeValue ? Changes { Edit { finding.offset, 0, ":" } }
                                                    : Changes();
}

// Next to another quote it was typed twice.
Changes Judge::quoteTwice(const Finding &finding) const
{
    const int at = finding.edit.offset;
    const bool isTwice = m_bytes.mid(at, 2) == "\"\"" || m_bytes.mid(qMax(0, at - 1), 2) == "\"\"";
    return isTwice ? asProposed(finding) : Changes();
}

// Where it is between blanks or signs. Next to a quote it may be the first letter of the string.
Changes Judge::strayB(const Finding &finding) const
{
    const int end = finding.edit.offset + finding.edit.removed;
    const QByteArray signs = " \t\r\n{}[],:";
    const bool isAlone = (finding.offset == 0 || signs.contains(m_bytes.at(finding.offset - 1)))
        && (end == m_bytes.size() || signs.contains(m_bytes.at(end)));
    return isAlone ? asProposed(finding) : Changes();
}

// What is between the quotes then must be a key of the library, or a plain string where one belongs.
Changes Judge::missingQuote(const Finding &finding) const
{
    const Edit &edit = finding.edit;
    if (edit.inserted != "\"" || edit.removed != 0)
        return Changes();
    const bool isOpening = std::strcmp(finding.rule, "missing-opening-quote") == 0;
    const int begin = isOpening ? edit.offset : m_bytes.lastIndexOf('"', edit.offset - 1) + 1;
    const int end = isOpening ? m_bytes.indexOf('"', edit.offset) : edit.offset;
    const QByteArray inside = m_bytes.mid(begin, end - begin);
    const int after = isOpening ? end + 1 : end;
    if (begin < 1 || !isFollowedBy(after, ",:}]\r\n"))
        return Changes();
    const ReadMember *const read = m_places.at(finding.offset);
    const bool isKey = isFollowedBy(after, ":");
    if (isKey)
        return isKeyOfLibrary(inside) ? asProposed(finding) : Changes();
    const bool isString = read && read->property && Properties::isText(*read->property);
    return isString && matches(inside, "^[A-Za-z][\\w.:/?&=%+@~-]*[\\w/]$") ? asProposed(finding)
                                                                            : Changes();
}

// They must be closed by their like: an apostrophe ends a string early, too.
Changes Judge::quotes(const Finding &finding) const
{
    const QByteArray quoted = given(finding);
    const QByteArray inside = finding.edit.inserted.mid(1, finding.edit.inserted.size() - 2);
    const int opening = qMax(1, Utf8::length(quoted.constData(), quoted.size()));
    const bool isClosed = quoted.size() > opening + inside.size();
    const bool isSingle = quoted.startsWith('\'') || quoted.startsWith('`');
    if (!isClosed || inside.endsWith('\\') || (isSingle && !quoted.endsWith(quoted.at(0))))
        return Changes();
    return isFollowedBy(finding.offset + finding.length, ",:}]\r\n") ? asProposed(finding)
                                                                     : Changes();
}

Changes Judge::key(const Finding &finding) const
{
    return isFollowedBy(finding.offset + finding.length, ":") ? asProposed(finding) : Changes();
}

// A string without quotes where a string belongs, and all of it one word.
Changes Judge::word(const Finding &finding) const
{
    const Property *const property = propertyAt(finding);
    const bool isWhole = isFollowedBy(finding.offset + finding.length, ",}]\r\n");
    return property && Properties::isText(*property) && isWhole
            && matches(given(finding), "^[A-Za-z][\\w.:/?&=%+@~-]*$")
        ? asProposed(finding)
        : Changes();
}

// "Yes" is true for a switch; for anything else it may be a string without quotes.
Changes Judge::keyword(const Finding &finding) const
{
    const QByteArray word = given(finding).toLower();
    const Property *const property = propertyAt(finding);
    const bool isSwitch = property && property->kind == Kind::Switch;
    const bool isText = property && Properties::isText(*property);
    const bool isNull = finding.edit.inserted == "null";
    if (!isFollowedBy(finding.offset + finding.length, ",}]\r\n"))
        return Changes();
    if (isOneOf(word, "true false null") || isSwitch)
        return asProposed(finding);
    return isNull && (isOneOf(word, "none nil undefined") || !isText) ? asProposed(finding)
                                                                      : Changes();
}

// A megabyte is 1000 or 1024 kilobytes, a comma before three digits a point or nothing, and what is a
// number in a string is a string.
Changes Judge::number(const Finding &finding) const
{
    const Property *const property = propertyAt(finding);
    const QByteArray written = given(finding);
    const bool isPercentage = written.endsWith('%');
    const bool isFraction = property && property->kind == Kind::Number;
    if (finding.edit.isNothing() || !property || !isNumberKind(*property)
        || (isPercentage && !isFraction))
        return Changes();
    const bool isHexadecimal = matches(written, "^0[xX]");
    const bool isAmbiguous = matches(written, "[kKmMgG][bB]?$")
        || matches(written, ",[0-9]{3}(?![0-9])")
        || (written.contains('_') && !matches(written, "^[0-9]{1,3}(_[0-9]{3})+$"));
    return isHexadecimal || !isAmbiguous ? asProposed(finding) : Changes();
}

// Of a file that is not UTF-8 as a whole nobody knows which letters its bytes are.
Changes Judge::letters(const Finding &finding) const
{
    return m_isUtf8 ? asProposed(finding) : Changes();
}

// In a path that begins with a drive, or is nothing but names with backslashes between them, each single
// one is meant as a backslash. With slashes for them the path may be that of a file which is there.
Changes Judge::backslashes(const Finding &finding) const
{
    const ReadMember *const read = m_places.at(finding.offset);
    const Property *const property = read ? read->property : nullptr;
    const bool isPath = property
        && (property->kind == Kind::FilePath || property->kind == Kind::ScriptFile
            || property->kind == Kind::Address);
    if (!isPath || finding.offset < read->value->begin)
        return Changes();
    const int begin = read->value->begin + 1;
    const QByteArray path = m_bytes.mid(begin, read->value->length() - 2);
    const bool hasNames = matches(path, "^[\\w.-]+(\\\\[\\w.-]+)+$");
    QByteArray slashes = path;
    slashes.replace('\\', '/');
    if (hasNames && QFileInfo(m_files.find(QString::fromLatin1(slashes))).isFile())
        return { Edit { begin, path.size(), slashes } };
    const bool isSure = !matches(path, "\\\\u[0-9a-fA-F]{4}")
        && (hasNames ? path.count('\\') > 1 : matches(path, "^[A-Za-z]:(\\\\[\\w .-]+)+$"));
    Changes edits;
    for (int at = path.indexOf('\\'); isSure && at >= 0; at = path.indexOf('\\', at + 1))
        edits.push_back(Edit { begin + at, 0, "\\" });
    return edits;
}

// Two wrong spellings of one key in an object leave open which of them counts.
Changes Judge::name(const Finding &finding) const
{
    const ReadMember *const read = m_places.at(finding.offset);
    const bool isKey = read && finding.offset == read->member->keyBegin;
    if (!isKey || !read->property || m_places.count(*read->object, read->meant) > 1)
        return Changes();
    return { Edits::renameKey(*read->member, read->meant) };
}

// Switches, numbers and strings that were given as one another. Which version was meant, and which file
// of a certificate, nobody knows.
Changes Judge::kind(const Finding &finding) const
{
    const Property *const property = propertyAt(finding);
    const bool isKnown = property
        && (property->kind == Kind::Switch || isNumberKind(*property)
            || Properties::isText(*property));
    return isKnown && property->kind != Kind::Version ? asProposed(finding) : Changes();
}

// Only where the string has what is written, and what the library makes of it.
Changes Judge::tag(const Finding &finding) const
{
    return finding.edit.inserted == '"' + given(finding) + '"' ? asProposed(finding) : Changes();
}

// 0 in front may stand for a point that is missing: nobody writes a percentage like that.
Changes Judge::percentage(const Finding &finding) const
{
    return given(finding).startsWith('0') ? Changes() : asProposed(finding);
}

SureRepair Judge::repairWith(const Finding &finding, const Changes &edits, bool hidesValue) const
{
    const ReadMember *const read = m_places.at(finding.offset);
    if (!read || !hidesValue)
        return SureRepair { { &finding }, edits };
    return SureRepair { { &finding }, edits, read->value->begin, read->value->end };
}

/// What can be sure, and whether it hides what is wrong with the value of its member.
struct Sure {
    const char *rule;
    Changes (Judge::*edits)(const Finding &finding) const;
    bool hidesValue = false;
};

const Sure table[] = {
    { "byte-order-mark", &Judge::asProposed },
    { "trailing-comma", &Judge::lastComma },
    { "extra-comma", &Judge::asProposed },
    { "missing-comma", &Judge::comma },
    { "missing-colon", &Judge::colon },
    { "missing-opening-quote", &Judge::missingQuote },
    { "unterminated-string", &Judge::missingQuote },
    { "extra-quote", &Judge::quoteTwice },
    { "single-quotes", &Judge::quotes },
    { "smart-quotes", &Judge::quotes },
    { "unquoted-key", &Judge::key },
    { "unquoted-text", &Judge::word },
    { "wrong-keyword", &Judge::keyword },
    { "bad-number", &Judge::number },
    { "invisible-character", &Judge::asProposed },

    { "stray-b", &Judge::strayB },
    { "leading-comma", &Judge::asProposed },
    { "leading-zero", &Judge::number },
    { "odd-number", &Judge::number },
    { "unescaped-backslash", &Judge::backslashes, true },
    { "bad-unicode-escape", &Judge::backslashes, true },
    { "non-ascii-text", &Judge::letters },

    { "no-version", &Judge::name, true },
    { "no-applications", &Judge::name, true },
    { "no-domain", &Judge::name, true },
    { "unknown-key", &Judge::name, true },
    { "wrong-kind", &Judge::kind },
    { "tag-not-text", &Judge::tag },
    { "out-of-range", &Judge::percentage },
    { "control-character", &Judge::backslashes, true },
};

bool isComment(const Finding &finding)
{
    return std::strcmp(finding.rule, "comment") == 0;
}

// The bytes that are changed already. What is inserted at one place has no order.
class Taken
{
public:
    bool take(const std::vector<Edit> &edits)
    {
        const auto isFree = [this](const Edit &edit) {
            auto next = m_all.upper_bound({ edit.offset + edit.removed, INT_MAX });
            return next == m_all.begin() || (--next)->second < edit.offset;
        };
        if (!std::all_of(edits.begin(), edits.end(), isFree))
            return false;
        for (const Edit &edit : edits)
            m_all.insert({ edit.offset, edit.offset + edit.removed });
        return true;
    }

private:
    std::set<std::pair<int, int>> m_all;
};

std::vector<SureRepair> apart(const std::vector<SureRepair> &repairs)
{
    Taken taken;
    std::vector<SureRepair> result;
    for (const SureRepair &repair : repairs) {
        if (taken.take(repair.edits))
            result.push_back(repair);
    }
    return result;
}

const Sure *sureOf(const Finding &finding)
{
    const auto row = std::find_if(std::begin(table), std::end(table), [&](const Sure &sure) {
        return std::strcmp(sure.rule, finding.rule) == 0;
    });
    return row == std::end(table) ? nullptr : &*row;
}

// The tree of a large file is only looked at where there is something to judge.
std::vector<SureRepair> ofTable(const Analysis &analysis, const DeviceFiles &files, bool isSyntax)
{
    std::unique_ptr<Judge> judge;
    std::vector<SureRepair> repairs;
    for (const Finding &finding : analysis.findings.all()) {
        const Sure *const sure = sureOf(finding);
        if (!sure || Rules::isSyntaxError(finding.rule) != isSyntax)
            continue;
        if (!judge)
            judge.reset(new Judge(analysis, files));
        const Changes edits = (judge.get()->*sure->edits)(finding);
        if (!edits.empty())
            repairs.push_back(judge->repairWith(finding, edits, sure->hidesValue));
    }
    return repairs;
}

} // namespace

std::vector<SureRepair> SureRepairs::of(const Analysis &analysis, const DeviceFiles &files)
{
    const std::vector<Finding> &all = analysis.findings.all();
    const bool hasMistakes = std::any_of(all.begin(), all.end(), [](const Finding &finding) {
        return Rules::isSyntaxError(finding.rule) && !isComment(finding);
    });
    if (hasMistakes)
        return apart(ofTable(analysis, files, true));
    const bool isReadWhole = !analysis.findings.isFull();
    if (std::any_of(all.begin(), all.end(), isComment))
        return isReadWhole ? apart(CommentKeys::repairs(analysis)) : std::vector<SureRepair>();
    return apart(ofTable(analysis, files, false));
}
