// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/repairs/piecetable.h"

#include <climits>

PieceTable::PieceTable(const QByteArray &text)
    : m_first(text), m_pieces { Piece { true, 0, text.size(), QByteArray() } }
{
}

PieceTable::Piece PieceTable::Piece::part(int from, int count) const
{
    if (isKept)
        return Piece { true, begin + from, count, QByteArray() };
    return Piece { false, begin, 0, inserted.mid(from, count) };
}

void PieceTable::apply(const std::vector<Edit> &edits)
{
    std::vector<Piece> result;
    size_t piece = 0;
    int within = 0; // of that piece
    int now = 0;
    const auto advance = [&](int to, bool isKept) {
        while (now < to && piece < m_pieces.size()) {
            const Piece &from = m_pieces[piece];
            const int count = qMin(from.size() - within, to - now);
            if (isKept)
                result.push_back(from.part(within, count));
            now += count;
            within += count;
            if (within < from.size())
                continue;
            ++piece;
            within = 0;
        }
    };
    for (const Edit &edit : edits) {
        advance(edit.offset, true);
        if (!edit.inserted.isEmpty())
            result.push_back(Piece { false, 0, 0, edit.inserted });
        advance(edit.offset + edit.removed, false);
    }
    advance(INT_MAX, true);
    m_pieces.swap(result);
}

QByteArray PieceTable::text() const
{
    QByteArray text;
    for (const Piece &piece : m_pieces)
        text += piece.isKept ? m_first.mid(piece.begin, piece.length) : piece.inserted;
    return text;
}

std::vector<PieceTable::Change> PieceTable::changes() const
{
    std::vector<Change> changes;
    int end = 0; // of what was kept last
    QByteArray inserted;
    const auto note = [&](int next) {
        if (next > end || !inserted.isEmpty())
            changes.push_back(Change { end, next, inserted });
        inserted.clear();
    };
    for (const Piece &piece : m_pieces) {
        if (!piece.isKept) {
            inserted += piece.inserted;
            continue;
        }
        note(piece.begin);
        end = piece.begin + piece.length;
    }
    note(m_first.size());
    return changes;
}

int PieceTable::original(int offset) const
{
    int end = 0; // of what was kept last, in the first text
    auto piece = m_pieces.begin();
    for (; piece != m_pieces.end() && offset >= piece->size(); ++piece) {
        offset -= piece->size();
        end = piece->isKept ? piece->begin + piece->length : end;
    }
    if (piece == m_pieces.end())
        return m_first.size();
    return piece->isKept ? piece->begin + offset : end;
}
