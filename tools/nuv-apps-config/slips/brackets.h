// SPDX-License-Identifier: MIT
#ifndef BRACKETS_H
#define BRACKETS_H

#include "tools/nuv-apps-config/findings/finding.h"
#include "tools/nuv-apps-config/text/sourcetext.h"

#include <vector>

/// Finds out which bracket was never closed, and where its closing one should stand.
///
/// A missing bracket is noticed long after its place, since the next closing one serves for it. The
/// indentation tells more: the first bracket that closes one from a line of another indentation closed
/// the wrong one.
class Brackets
{
public:
    explicit Brackets(const SourceText &source) : m_source(source) {}

    void beginPass();
    void open(int offset, int code);

    /// The innermost bracket is closed; by one that is in the file, or by one that was put in.
    void close(int offset, bool isInFile);

    /// The bracket that was closed from a line of another indentation before any other, -1 for none;
    /// its closing one may be missing.
    int suspect() const { return m_suspect.offset; }
    int suspectCode() const { return m_suspect.code; }

    /// The first closing bracket, neither first on its line nor on that of its opening one, that may be
    /// one too many; -1 for none.
    int oddClosing() const { return m_oddClosing; }

    int innermost() const { return m_open.empty() ? -1 : m_open.back().offset; }

    /// The first line after the bracket that is not indented further than the bracket's own.
    int placeByIndentation(int opened, int fallback) const;

    /// Notes that a closing bracket is missing, at `fallback` at the latest. `code` is its token.
    /// Returns false when that would lead nowhere.
    bool insertMissing(int fallback, int code);

    /// The token of the bracket that is to be put in before the token at `offset`, -1 for none.
    int take(int offset);

    void report(Findings &findings) const;

    /// The finding for a missing bracket: its token, where it belongs, and what it would close.
    static Finding &report(const SourceText &source, int code, int place, int opened,
                           Findings &findings);

private:
    struct Opened {
        int offset;
        int code;
    };
    struct Inserted {
        int offset; ///< where the closing one belongs
        int code; ///< its token
        int opened; ///< what it closes
        bool isTaken;
    };

    const SourceText &m_source;
    std::vector<Opened> m_open;
    std::vector<Inserted> m_inserted;
    int m_oddClosing = -1;
    Opened m_suspect = Opened { -1, 0 }; ///< closed by a bracket of another indentation
};

#endif // BRACKETS_H
