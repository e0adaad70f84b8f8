// SPDX-License-Identifier: MIT
#ifndef PARSED_H
#define PARSED_H

#include <QString>

/// Why a value cannot be used.
struct Objection {
    QString
        reason; ///< as in "the port is missing"; empty: there is none. Quotes nothing of the value
    QString
        instead; ///< a usable value that was probably meant; may be empty. As secret as the value

    Objection() {}
    explicit Objection(const char *why, const QString &meant = QString())
        : reason(QLatin1String(why)), instead(meant)
    {
    }

    bool isNone() const { return reason.isEmpty(); }
};

/// What a string of the configuration means, or why it cannot be used.
template<typename Value>
struct Parsed {
    Value value; ///< only where there is no objection
    Objection objection;

    bool isUsable() const { return objection.isNone(); }
};

/// The objection with a usable text in `instead`, or none: what is proposed is judged, too, and can be
/// corrected once more.
template<typename Judge>
Objection withUsableProposal(Objection objection, Judge judge)
{
    QString proposal = objection.instead;
    objection.instead.clear();
    for (int i = 0; i < 4 && !proposal.isEmpty(); ++i) {
        const Objection next = judge(proposal);
        if (next.isNone()) {
            objection.instead = proposal;
            break;
        }
        proposal = next.instead;
    }
    return objection;
}

#endif // PARSED_H
