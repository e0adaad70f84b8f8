// SPDX-License-Identifier: MIT
#ifndef SLIP_H
#define SLIP_H

#include "tools/nuv-apps-config/findings/finding.h"

#include <QByteArray>

/// A slip of the hand that may be the cause of a syntax error, and the change that takes it back.
struct Slip {
    /// From MissingOpeningQuote on they change what a key or a value says.
    enum Kind {
        ExtraComma,
        TrailingComma,
        MisplacedComma,
        MissingComma,
        WrongForComma,
        MissingColon,
        WrongForColon,
        ExtraColon,
        MissingValue,
        MissingOpening,
        ExtraOpening,
        MissingClosing,
        ExtraClosing,
        WrongBracket,
        MissingOpeningQuote,
        MissingClosingQuote,
        WrongForQuote,
        UnescapedQuote,
        ExtraQuote,
        EscapedQuote,
        Exchanged,
        ExtraCharacter,
        NumberWithTail,
        DecimalComma
    };

    Kind kind;
    Edit edit;
    int token; ///< how many tokens in front of the error it is
    int cost; ///< the smaller, the likelier
    int place; ///< where it is reported
    int length;
};

namespace Slips {

/// What is said about the slip. `given` is what the file holds there.
Finding &report(const Slip &slip, const QByteArray &given, int place, Findings &findings);

} // namespace Slips

#endif // SLIP_H
