#ifndef TREEBUILDER_H
#define TREEBUILDER_H

#include "global/qtcompat.h"
#include "json/varianttree.h"

#include <QStack>

#include <vector>

/// Builds a variant tree from a stream of tokens, with nothing to spare: a container grows in its
/// place, a value is moved into it. The handler of the readers that report events, and the floor.
class TreeBuilder
{
public:
    void openObject() { m_stack.push_back(QVariantMap()); }
    void openArray() { m_stack.push_back(QVariantList()); }
    void key(const QString &name) { m_keys.push_back(name); }

    void close()
    {
        QVariant container;
        container.swap(m_stack.back());
        m_stack.pop_back();
        value(container);
    }

    void value(QVariant &value)
    {
        if (m_stack.empty()) {
            m_root.swap(value);
        } else if (VariantTree::isMap(m_stack.back())) {
            QtCompat::insertMulti(VariantTree::map(m_stack.back()), m_keys.back()).swap(value);
            m_keys.pop_back();
        } else {
            QVariantList &list = VariantTree::list(m_stack.back());
            list.append(QVariant());
            list.last().swap(value);
        }
    }

    QVariant take()
    {
        QVariant root;
        root.swap(m_root);
        return root;
    }

private:
    std::vector<QVariant> m_stack;
    std::vector<QString> m_keys;
    QVariant m_root;
};

#endif // TREEBUILDER_H
