// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/slips/brackets.h"

#include "json/jsongrammar.h"

#include <algorithm>

void Brackets::beginPass()
{
    m_open.clear();
    m_suspect = Opened { -1, 0 };
    m_oddClosing = -1;
    for (Inserted &inserted : m_inserted)
        inserted.isTaken = false;
}

void Brackets::open(int offset, int code)
{
    m_open.push_back(Opened { offset, code });
}

void Brackets::close(int offset, bool isInFile)
{
    const Opened opened = m_open.back();
    m_open.pop_back();
    if (!isInFile || m_suspect.offset >= 0)
        return;
    if (m_source.isFirstOnLine(offset)) {
        if (m_source.indentation(offset) != m_source.indentation(opened.offset))
            m_suspect = opened;
        return;
    }
    const bool isOnOneLine = m_source.lineBegin(offset) == m_source.lineBegin(opened.offset);
    if (!isOnOneLine && m_oddClosing < 0)
        m_oddClosing = offset;
}

int Brackets::placeByIndentation(int opened, int fallback) const
{
    const int limit = m_source.indentation(opened);
    const QByteArray &bytes = m_source.bytes();
    int line = bytes.indexOf('\n', opened);
    while (line >= 0 && line + 1 < bytes.size()) {
        ++line;
        const int first = line + m_source.indentation(line);
        if (first >= fallback)
            return fallback;
        const bool isBlank = bytes.at(first) == '\n' || bytes.at(first) == '\r';
        if (!isBlank && first - line <= limit)
            return first;
        line = bytes.indexOf('\n', first);
    }
    return fallback;
}

bool Brackets::insertMissing(int fallback, int code)
{
    const size_t most = 20;
    if (m_inserted.size() >= most)
        return false;
    Opened opened = m_open.back();
    if (m_suspect.offset >= 0) {
        opened = m_suspect;
        code = opened.code == T_LBRACE ? T_RBRACE : T_RBRACKET;
    }
    const int place = placeByIndentation(opened.offset, fallback);
    for (const Inserted &inserted : m_inserted) {
        if (inserted.offset == place && inserted.opened == opened.offset)
            return false;
    }
    // Of several at one place the one that was opened last comes first.
    const auto next =
        std::find_if(m_inserted.begin(), m_inserted.end(), [&](const Inserted &inserted) {
            return inserted.offset > place
                || (inserted.offset == place && inserted.opened < opened.offset);
        });
    m_inserted.insert(next, Inserted { place, code, opened.offset, false });
    return true;
}

int Brackets::take(int offset)
{
    for (Inserted &inserted : m_inserted) {
        if (inserted.offset > offset)
            break;
        if (inserted.isTaken)
            continue;
        inserted.isTaken = true;
        return inserted.code;
    }
    return -1;
}

void Brackets::report(Findings &findings) const
{
    for (const Inserted &inserted : m_inserted)
        report(m_source, inserted.code, inserted.offset, inserted.opened, findings);
}

Finding &Brackets::report(const SourceText &source, int code, int place, int opened,
                          Findings &findings)
{
    const bool isBrace = code == T_RBRACE;
    const Place opening = source.place(opened);
    Finding &finding = findings.add(
        isBrace ? "missing-closing-brace" : "missing-closing-bracket", place, 1,
        QString(QLatin1String("a %1 is missing here: the %2 of line %3, column %4 is never closed"))
            .arg(isBrace ? QLatin1Char('}') : QLatin1Char(']'))
            .arg(isBrace ? QLatin1Char('{') : QLatin1Char('['))
            .arg(opening.line)
            .arg(opening.column));
    const Remark remark = { opened, QString(QLatin1String("opened here")) };
    finding.remarks.push_back(remark);
    return finding;
}
