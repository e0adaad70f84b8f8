// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/text/sourcetext.h"

#include "tools/nuv-apps-config/text/utf8.h"

#include <algorithm>
#include <cstring>

namespace {

const int BlockSize = 1024;

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

} // namespace

SourceText::SourceText(const QString &name, const QByteArray &bytes) : m_name(name), m_bytes(bytes)
{
}

void SourceText::findLines() const
{
    const char *const begin = m_bytes.constData();
    for (int at = 0; at <= m_bytes.size();) {
        const void *const found = std::memchr(begin + at, '\n', size_t(m_bytes.size() - at));
        const int end = found ? int(static_cast<const char *>(found) - begin) : m_bytes.size();
        addLine(at, end);
        at = end + 1;
    }
    countCharacters();
}

void SourceText::addLine(int begin, int end) const
{
    const char *const line = m_bytes.constData() + begin;
    int indentation = 0;
    while (begin + indentation < end && isBlank(line[indentation]))
        ++indentation;
    m_lines.push_back({ begin, indentation, Utf8::isValid(line, end - begin) });
}

void SourceText::countCharacters() const
{
    m_characters.push_back(0);
    for (int at = BlockSize; at <= m_bytes.size(); at += BlockSize) {
        const char *const block = m_bytes.constData() + at - BlockSize;
        m_characters.push_back(m_characters.back() + Utf8::count(block, BlockSize));
    }
}

int SourceText::charactersBefore(int offset) const
{
    const int block = offset / BlockSize;
    const int begin = block * BlockSize;
    return m_characters[size_t(block)] + Utf8::count(m_bytes.constData() + begin, offset - begin);
}

size_t SourceText::lineIndex(int offset) const
{
    if (m_lines.empty())
        findLines();
    const auto next = std::upper_bound(m_lines.begin(), m_lines.end(), offset,
                                       [](int at, const Line &line) { return at < line.begin; });
    return size_t(next - m_lines.begin()) - 1;
}

int SourceText::lineBegin(int offset) const
{
    return m_lines[lineIndex(offset)].begin;
}

int SourceText::lineEnd(int offset) const
{
    const size_t next = lineIndex(offset) + 1;
    int end = next < m_lines.size() ? m_lines[next].begin - 1 : m_bytes.size();
    if (end > lineBegin(offset) && m_bytes.at(end - 1) == '\r')
        --end;
    return end;
}

Place SourceText::place(int offset) const
{
    const size_t index = lineIndex(offset);
    const Line &line = m_lines[index];
    const int inFile = qMin(offset, m_bytes.size());
    const int before = line.isUtf8
        ? charactersBefore(inFile) - charactersBefore(line.begin) + offset - inFile
        : offset - line.begin;
    return { int(index) + 1, 1 + before };
}

int SourceText::indentation(int offset) const
{
    return m_lines[lineIndex(offset)].indentation;
}

bool SourceText::isFirstOnLine(int offset) const
{
    const Line &line = m_lines[lineIndex(offset)];
    return line.begin + line.indentation == offset;
}
