// SPDX-License-Identifier: MIT
#ifndef EDITS_H
#define EDITS_H

#include "tools/nuv-apps-config/tree/document.h"
#include "tools/nuv-apps-config/findings/finding.h"

/// Changes that a finding proposes, in the bytes of the file.
namespace Edits {

/// A string in quotes, in ASCII.
QByteArray quoted(const QString &text);

Edit replace(const Node &value, const QByteArray &bytes);

/// Writes `by` instead of the key, with quotes.
Edit renameKey(const Node::Child &member, const QString &by);

/// Takes a member away with the comma that separated it from another.
Edit removeMember(const Document &document, const Node &object, const Node::Child &member);

/// Puts `bytes`, a key with its value, in front of the first member.
Edit insertMember(const Node &object, const QByteArray &bytes);

} // namespace Edits

#endif // EDITS_H
