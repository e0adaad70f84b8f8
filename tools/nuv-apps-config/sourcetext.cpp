#include "tools/nuv-apps-config/sourcetext.h"

#include "tools/nuv-apps-config/utf8.h"

#include <algorithm>
#include <cstring>

SourceText::SourceText(const QString &name, const QByteArray &bytes)
    : m_name(name), m_bytes(bytes), m_lines(1, 0)
{
    const char *const begin = m_bytes.constData();
    const char *const end = begin + m_bytes.size();
    const char *p = begin;
    while (p != end) {
        p = static_cast<const char *>(std::memchr(p, '\n', size_t(end - p)));
        if (!p)
            break;
        ++p;
        m_lines.push_back(int(p - begin));
    }
}

int SourceText::lineIndex(int offset) const
{
    return int(std::upper_bound(m_lines.begin(), m_lines.end(), offset) - m_lines.begin()) - 1;
}

int SourceText::lineBegin(int offset) const
{
    return m_lines[size_t(lineIndex(offset))];
}

int SourceText::lineEnd(int offset) const
{
    const size_t next = size_t(lineIndex(offset)) + 1;
    int end = next < m_lines.size() ? m_lines[next] - 1 : m_bytes.size();
    if (end > lineBegin(offset) && m_bytes.at(end - 1) == '\r')
        --end;
    return end;
}

Place SourceText::place(int offset) const
{
    const int begin = lineBegin(offset);
    const char *const line = m_bytes.constData() + begin;
    const int length = qMax(0, lineEnd(offset) - begin);
    const int before = offset - begin;
    const Place place = { lineIndex(offset) + 1,
                          1 + (Utf8::isValid(line, length) ? Utf8::count(line, before) : before) };
    return place;
}

int SourceText::indentation(int offset) const
{
    int p = lineBegin(offset);
    const int begin = p;
    while (p < m_bytes.size() && (m_bytes.at(p) == ' ' || m_bytes.at(p) == '\t'))
        ++p;
    return p - begin;
}

bool SourceText::isFirstOnLine(int offset) const
{
    return lineBegin(offset) + indentation(offset) == offset;
}
