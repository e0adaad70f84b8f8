// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/report/excerpt.h"

#include "tools/nuv-apps-config/report/columns.h"
#include "tools/nuv-apps-config/text/utf8.h"

namespace {

const int MostBytes = 4; // of a character

/// What is shown for some bytes.
struct Piece {
    QString text;
    int end; ///< of the bytes
    int columns;
};

typedef std::vector<Piece> Pieces;

QString character(const char *p, int size)
{
    const unsigned char first = static_cast<unsigned char>(*p);
    if (first == '\t')
        return QLatin1String(" ");
    if (first < 0x20 || first == 0x7f)
        return QString(QChar(0xfffd));
    if (size == 1 && first >= 0x80)
        return QString(QChar(first < 0xa0 ? 0xfffd : first));
    return QString::fromUtf8(p, size);
}

// A secret is one piece, so that no part of it is shown, and its length neither.
Pieces piecesOf(const SourceText &source, int begin, int end, const Ranges &secrets)
{
    const char *const bytes = source.bytes().constData();
    Pieces pieces;
    for (int p = begin; p < end; p = pieces.back().end) {
        const Range *const secret = secrets.at(p);
        const int next =
            secret ? qMin(secret->end, end) : p + qMax(1, Utf8::length(bytes + p, end - p));
        const QString text = secret ? Secrets::mask() : character(bytes + p, next - p);
        pieces.push_back(Piece { text, next, Columns::of(text) });
    }
    return pieces;
}

int columnsOf(const Pieces &pieces, size_t from, size_t to)
{
    int columns = 0;
    for (size_t i = from; i < to; ++i)
        columns += pieces[i].columns;
    return columns;
}

/// The pieces from `first` to `last` that fit, around the one at `middle`.
struct Window {
    size_t first;
    size_t last;
};

// What is not needed on one side is for the other. Of a cut line two columns are for what says so.
Window windowIn(const Pieces &pieces, size_t middle, int columns)
{
    const int before = columnsOf(pieces, 0, middle);
    const int after = columnsOf(pieces, middle, pieces.size());
    const int share = qMin(before, qMax(columns * 7 / 16, columns - after));
    Window window = { middle, middle };
    int taken = 0;
    while (window.first > 0 && taken + pieces[window.first - 1].columns <= share)
        taken += pieces[--window.first].columns;
    while (window.last < pieces.size() && taken + pieces[window.last].columns <= columns)
        taken += pieces[window.last++].columns;
    return window;
}

// Where a character begins, so far before `offset` that no more can be shown.
int beginOfShown(const SourceText &source, int offset, int columns)
{
    int begin = qMax(source.lineBegin(offset), offset - MostBytes * columns);
    const auto isWithin = [&source](int at) {
        return (static_cast<unsigned char>(source.bytes().at(at)) & 0xc0) == 0x80;
    };
    const int furthest = qMin(offset, begin + MostBytes - 1);
    while (begin > source.lineBegin(offset) && begin < furthest && isWithin(begin))
        ++begin;
    return begin;
}

} // namespace

Excerpt makeExcerpt(const SourceText &source, int offset, int length, const Secrets &secrets,
                    int columns)
{
    const int begin = beginOfShown(source, offset, columns);
    const int end = qMin(source.lineEnd(offset), offset + MostBytes * columns);
    const Pieces pieces = piecesOf(source, begin, end, secrets.ranges());
    size_t middle = 0;
    while (middle < pieces.size() && pieces[middle].end <= offset)
        ++middle;
    const bool isWhole = begin == source.lineBegin(offset) && end == source.lineEnd(offset)
        && columnsOf(pieces, 0, pieces.size()) <= columns;
    const Window window =
        isWhole ? Window { 0, pieces.size() } : windowIn(pieces, middle, columns - 2);
    const QString ellipsis(QChar(0x2026));

    Excerpt excerpt;
    const bool isCutBefore = window.first > 0 || begin > source.lineBegin(offset);
    const bool isCutAfter = window.last < pieces.size() || end < source.lineEnd(offset);
    excerpt.line = isCutBefore ? ellipsis : QString();
    excerpt.caret = columnsOf(pieces, window.first, middle) + isCutBefore;
    size_t marked = middle;
    while (marked < window.last && pieces[marked].end <= offset + length)
        ++marked;
    excerpt.width = qMax(1, columnsOf(pieces, middle, marked));
    for (size_t i = window.first; i < window.last; ++i)
        excerpt.line += pieces[i].text;
    excerpt.line += isCutAfter ? ellipsis : QString();
    return excerpt;
}
