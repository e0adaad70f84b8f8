// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/tree/edits.h"

#include "json/jsonwriter.h"

namespace {

Edit change(int begin, int end, const QByteArray &bytes = QByteArray())
{
    Edit edit;
    edit.offset = begin;
    edit.removed = end - begin;
    edit.inserted = bytes;
    return edit;
}

} // namespace

QByteArray Edits::quoted(const QString &text)
{
    QByteArray bytes;
    for (const char byte : JsonWriter::escapeString(text)) {
        if (static_cast<unsigned char>(byte) < 0x20)
            bytes += "\\u00" + QByteArray(1, byte).toHex();
        else
            bytes += byte;
    }
    return '"' + bytes + '"';
}

Edit Edits::replace(const Node &value, const QByteArray &bytes)
{
    return change(value.begin, value.end, bytes);
}

Edit Edits::renameKey(const Node::Child &member, const QString &by)
{
    return change(member.keyBegin, member.keyEnd, quoted(by));
}

Edit Edits::removeMember(const Document &document, const Node &object, const Node::Child &member)
{
    const int index = int(&member - object.children.data());
    const bool isLast = index + 1 == int(object.children.size());
    if (!isLast)
        return change(member.keyBegin, object.children[size_t(index) + 1].keyBegin);
    const int begin =
        index > 0 ? document.at(object.children[size_t(index) - 1]).end : member.keyBegin;
    return change(begin, document.at(member).end);
}

Edit Edits::insertMember(const Node &object, const QByteArray &bytes)
{
    const int place = object.begin + 1;
    return change(place, place, ' ' + bytes + (object.children.empty() ? " " : ","));
}
