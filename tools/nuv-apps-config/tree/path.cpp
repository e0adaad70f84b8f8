// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/tree/path.h"

#include "tools/nuv-apps-config/tree/edits.h"

#include <algorithm>

namespace {

bool isPartOfWord(QChar c)
{
    return c.isLetterOrNumber() || c.isMark() || c == QLatin1Char('_') || c == QLatin1Char('$');
}

bool isWord(const QString &key)
{
    const QChar first = key.isEmpty() ? QChar(0) : key.at(0);
    const bool isName = first.unicode() < 128 && isPartOfWord(first) && !first.isDigit();
    return isName && std::all_of(key.begin(), key.end(), isPartOfWord);
}

QString step(const QString &path, const QString &key)
{
    if (!isWord(key))
        return path + QLatin1Char('[') + QString::fromLatin1(Edits::quoted(key)) + QLatin1Char(']');
    return path.isEmpty() ? key : path + QLatin1Char('.') + key;
}

// The child whose key or value is there. In a file with mistakes an entry may be where another one is:
// the first of those counts.
const Node::Child *childAt(const Document &document, const Node &node, int offset)
{
    const bool isObject = node.type == Node::Object;
    const auto isAt = [&](const Node::Child &child) {
        const int begin = isObject ? child.keyBegin : document.at(child).begin;
        return offset >= begin && offset < document.at(child).end;
    };
    const auto found = std::find_if(node.children.begin(), node.children.end(), isAt);
    return found == node.children.end() ? nullptr : &*found;
}

} // namespace

QString Path::at(const Document &document, int offset)
{
    QString path;
    if (document.isEmpty())
        return path;
    const Node *node = &document.rootNode();
    while (const Node::Child *child = childAt(document, *node, offset)) {
        const auto index = child - &node->children.front();
        path = node->type == Node::Object
            ? step(path, child->key)
            : path + QLatin1Char('[') + QString::number(index) + QLatin1Char(']');
        node = &document.at(*child);
        if (offset < node->begin)
            break;
    }
    return path;
}
