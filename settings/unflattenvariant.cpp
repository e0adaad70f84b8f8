#include "settings/flatkeys.h"

#include "json/varianttree.h"

#include <climits>

namespace {

// The object in `node`. Anything else that the node holds is dropped for an empty object.
QVariantMap &makeObject(QVariant &node)
{
    if (!VariantTree::isMap(node)) {
        const QVariantMap object = node.toMap();
        VariantTree::dispose(node);
        node = object;
    }
    return VariantTree::map(node);
}

// Makes the object in `node` an array of `size` elements, invalid where the object has no entry for the
// position.
void makeArray(QVariant &node, int size)
{
    QVariantMap &object = makeObject(node);
    QVariantList list;
    for (int position = 1; position <= size; ++position) {
        list.append(QVariant());
        const QVariantMap::iterator entry = object.find(QString::number(position));
        if (entry != object.end())
            list.last().swap(entry.value());
    }
    VariantTree::dispose(node);
    node = list;
}

} // namespace

void unflattenVariant(QVariant &root, const QString &key, const QVariant &value)
{
    QVariant *node = &root;
    int begin = 0;
    for (;;) {
        const int end = key.indexOf(FlatKeySeparator, begin);
        if (end < 0)
            break;
        node = &makeObject(*node)[key.mid(begin, end - begin)];
        begin = end + 1;
    }
    const QString name = key.mid(begin);
    if (name == FlatKeySize) {
        makeArray(*node, value.toInt());
        return;
    }
    QVariant &place = makeObject(*node)[name];
    VariantTree::dispose(place);
    place = value;
}
