// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/unifieddiff.h"

#include "tools/nuv-apps-config/repairs/repairedfile.h"
#include "tools/nuv-apps-config/report/output.h"
#include "tools/nuv-apps-config/secrets/decodedtext.h"
#include "tools/nuv-apps-config/secrets/secrets.h"
#include "tools/nuv-apps-config/text/utf8.h"

#include <algorithm>

namespace {

const int Context = 3; ///< lines around a change

/// A text of which lines are shown.
struct Side {
    const QByteArray &bytes;
    Ranges secrets;
    std::vector<int> lines; ///< where each begins

    explicit Side(const Analysis &analysis)
        : bytes(analysis.source.bytes()), secrets(analysis.secrets->ranges())
    {
        for (int begin = 0; begin < bytes.size();) {
            lines.push_back(begin);
            const int end = bytes.indexOf('\n', begin);
            begin = end < 0 ? bytes.size() : end + 1;
        }
    }

    int count() const { return int(lines.size()); }
    int begin(int line) const { return line < count() ? lines[size_t(line)] : bytes.size(); }
    int lineOf(int offset) const
    {
        const auto next = std::upper_bound(lines.begin(), lines.end(), offset);
        return int(next - lines.begin()) - 1;
    }
    /// The line that begins there, which may be the one after the last.
    int lineFrom(int offset) const { return offset < bytes.size() ? lineOf(offset) : count(); }
    bool isLineBegin(int offset) const
    {
        return offset == bytes.size() || std::binary_search(lines.begin(), lines.end(), offset);
    }
};

/// Lines that others take the place of.
struct Block {
    Range before; ///< lines
    Range after;
};

bool isControl(QChar c)
{
    const ushort code = c.unicode();
    return (code < 0x20 && code != '\t') || (code >= 0x7f && code < 0xa0);
}

class Diff
{
public:
    explicit Diff(const RepairedFile &file)
        : m_file(file), m_changes(file.changes()), m_before(file.before()), m_after(file.now())
    {
        shareSecrets();
        findBlocks();
    }

    QByteArray text() const;

private:
    void shareSecrets();
    void findBlocks();
    void writeHunk(size_t first, size_t last, QByteArray &text) const;
    void writeLines(const Side &side, char mark, Range lines, QByteArray &text) const;
    bool repeatsSecret(const QByteArray &inserted) const;
    static QByteArray shown(const Side &side, int begin, int end);

    const RepairedFile &m_file;
    std::vector<PieceTable::Change> m_changes;
    Side m_before;
    Side m_after;
    std::vector<Block> m_blocks;
};

// What is secret in one of the two is secret in the other, too. A broken file does not tell where its
// secrets are, and hides whole lines: what it hides must not be shown because a repair made a remark or
// a key of it.
void Diff::shareSecrets()
{
    const Ranges ofBefore = m_before.secrets;
    const Ranges ofAfter = m_after.secrets;
    int kept = 0;
    int shift = 0;
    const auto shareKept = [&](int end) {
        for (const Range &range : ofBefore.overlapping(kept, end))
            m_after.secrets.add(qMax(range.begin, kept) + shift, qMin(range.end, end) + shift);
        for (const Range &range : ofAfter.overlapping(kept + shift, end + shift))
            m_before.secrets.add(qMax(range.begin - shift, kept), qMin(range.end - shift, end));
    };
    for (const PieceTable::Change &change : m_changes) {
        shareKept(change.begin);
        const int begin = change.begin + shift;
        const int end = begin + change.inserted.size();
        if (!ofBefore.overlapping(change.begin, change.end).empty()
            || repeatsSecret(change.inserted))
            m_after.secrets.add(begin, end);
        if (!ofAfter.overlapping(begin, end).empty())
            m_before.secrets.add(change.begin, change.end);
        shift = end - change.end;
        kept = change.end;
    }
    shareKept(m_before.bytes.size());
    m_before.secrets.settle();
    m_after.secrets.settle();
}

// A comment may hold a secret, and goes elsewhere.
bool Diff::repeatsSecret(const QByteArray &inserted) const
{
    const int quote = inserted.startsWith('"') ? 1 : 0;
    const QString plain = QString::fromLatin1(inserted.mid(quote, inserted.size() - 2 * quote));
    const QString decoded = DecodedText(inserted, quote, inserted.size() - quote).text();
    const auto repeats = [&](const Secrets &secrets) {
        return secrets.text(plain) != plain || secrets.text(decoded) != decoded;
    };
    return repeats(*m_file.now().secrets) || repeats(*m_file.before().secrets);
}

// Each change takes the lines that it begins and ends in. It ends between two lines where it does so in
// both texts.
void Diff::findBlocks()
{
    int shift = 0;
    for (const PieceTable::Change &change : m_changes) {
        const int first = qMax(0, m_before.lineOf(change.begin));
        const bool endsLine = change.end > change.begin && m_before.isLineBegin(change.end)
            && m_before.isLineBegin(change.begin) && change.inserted.isEmpty();
        const int last = endsLine ? m_before.lineFrom(change.end) : m_before.lineOf(change.end) + 1;
        const int begin = m_before.begin(first) + shift;
        shift += change.inserted.size() - (change.end - change.begin);
        const int end = m_before.begin(last) + shift;
        const Range lines = { m_after.lineFrom(begin), m_after.lineFrom(end) };
        const Block block = { { first, qMax(last, first) }, lines };
        if (!m_blocks.empty() && m_blocks.back().before.end >= first) {
            m_blocks.back().before.end = qMax(m_blocks.back().before.end, block.before.end);
            m_blocks.back().after.end = block.after.end;
        } else {
            m_blocks.push_back(block);
        }
    }
}

QByteArray Diff::text() const
{
    if (m_blocks.empty())
        return QByteArray();
    const QByteArray name = Output::printable(m_file.before().source.name()).toUtf8();
    QByteArray text = "--- " + name + "\n+++ " + name + '\n';
    for (size_t first = 0; first < m_blocks.size();) {
        size_t last = first;
        while (last + 1 < m_blocks.size()
               && m_blocks[last + 1].before.begin - m_blocks[last].before.end <= 2 * Context)
            ++last;
        writeHunk(first, last, text);
        first = last + 1;
    }
    return text;
}

QByteArray rangeText(int begin, int count)
{
    return QByteArray::number(count > 0 ? begin + 1 : begin) + ',' + QByteArray::number(count);
}

void Diff::writeHunk(size_t first, size_t last, QByteArray &text) const
{
    const int lead = qMin(Context, m_blocks[first].before.begin);
    const int trail = qMin(Context, m_before.count() - m_blocks[last].before.end);
    const Range before = { m_blocks[first].before.begin - lead, m_blocks[last].before.end + trail };
    const Range after = { m_blocks[first].after.begin - lead, m_blocks[last].after.end + trail };
    text += "@@ -" + rangeText(before.begin, before.end - before.begin) + " +"
        + rangeText(after.begin, after.end - after.begin) + " @@\n";
    int line = before.begin;
    for (size_t i = first; i <= last; ++i) {
        writeLines(m_before, ' ', { line, m_blocks[i].before.begin }, text);
        writeLines(m_before, '-', m_blocks[i].before, text);
        writeLines(m_after, '+', m_blocks[i].after, text);
        line = m_blocks[i].before.end;
    }
    writeLines(m_before, ' ', { line, before.end }, text);
}

void Diff::writeLines(const Side &side, char mark, Range lines, QByteArray &text) const
{
    for (int line = lines.begin; line < lines.end; ++line) {
        const int begin = side.begin(line);
        const int end = side.begin(line + 1);
        const bool isEnded = side.bytes.at(end - 1) == '\n';
        text += mark + shown(side, begin, isEnded ? end - 1 : end) + '\n';
        if (!isEnded)
            text += "\\ No newline at end of file\n";
    }
}

// A line that has nothing to hide is as it is in the file, for the diff to be applied.
QByteArray Diff::shown(const Side &side, int begin, int end)
{
    QByteArray line;
    for (int at = begin; at < end;) {
        const Range *const secret = side.secrets.at(at);
        line += secret ? Secrets::mask().toLatin1() : side.bytes.mid(at, 1);
        at = secret ? secret->end : at + 1;
    }
    const bool isUtf8 = Utf8::isValid(line.constData(), line.size());
    const bool hasReturn = line.endsWith('\r');
    const QByteArray rest = line.left(line.size() - hasReturn);
    const QString text = isUtf8 ? QString::fromUtf8(rest) : QString::fromLatin1(rest);
    if (std::none_of(text.begin(), text.end(), isControl))
        return line;
    QString result;
    for (const QChar c : text)
        result += isControl(c) ? Output::printable(QString(c)) : QString(c);
    return result.toUtf8() + (hasReturn ? "\r" : "");
}

} // namespace

QByteArray unifiedDiff(const RepairedFile &file)
{
    return Diff(file).text();
}
