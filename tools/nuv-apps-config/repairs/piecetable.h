// SPDX-License-Identifier: MIT
#ifndef PIECETABLE_H
#define PIECETABLE_H

#include "tools/nuv-apps-config/findings/finding.h"

#include <QByteArray>

#include <vector>

/// A text that is changed in several rounds, and what all of them together did to it.
class PieceTable
{
public:
    /// Bytes of the first text that others have replaced.
    struct Change {
        int begin; ///< in the first text
        int end;
        QByteArray inserted;
    };

    explicit PieceTable(const QByteArray &text);

    /// The edits are in the text as it is now, in order, and do not overlap.
    void apply(const std::vector<Edit> &edits);

    /// The text as it is now.
    QByteArray text() const;

    /// In order, apart from each other.
    std::vector<Change> changes() const;

    /// Where in the first text the byte is that the text has now at `offset`; for one that was inserted,
    /// its place. At the end of the text it is the end of the first.
    int original(int offset) const;

private:
    /// Bytes of the first text, or others.
    struct Piece {
        bool isKept;
        int begin; ///< in the first text
        int length;
        QByteArray inserted;

        int size() const { return isKept ? length : inserted.size(); }
        Piece part(int from, int count) const;
    };

    QByteArray m_first;
    std::vector<Piece> m_pieces;
};

#endif // PIECETABLE_H
