// SPDX-License-Identifier: MIT
#ifndef VALUEKIND_H
#define VALUEKIND_H

#include <QString>
#include <QVariant>

/// What a property can be: which values it accepts, and how one is shown.
struct ValueKind {
    const char *name; ///< as in "it takes a number from 0 to 1"
    bool (*accepts)(const QVariant &value);
    QString (*shown)(const QVariant &value); ///< without secrets
};

/// Each kind of JSON means itself: "true" is a string, not a switch.
namespace ValueKinds {

extern const ValueKind onOff;
extern const ValueKind text; ///< may be empty
extern const ValueKind address;
extern const ValueKind fileName;
extern const ValueKind factor;
extern const ValueKind fraction;
extern const ValueKind port;
extern const ValueKind bytes;
extern const ValueKind domains;
extern const ValueKind secret;
extern const ValueKind proxy;
extern const ValueKind webAddress;

} // namespace ValueKinds

#endif // VALUEKIND_H
