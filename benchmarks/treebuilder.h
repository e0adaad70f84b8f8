// SPDX-License-Identifier: MIT
#ifndef TREEBUILDER_H
#define TREEBUILDER_H

#include <QVariant>

#include <vector>

// What the peers build the tree with. Nothing of the library's own is used, lest a gain of ours be one
// of theirs.

/// The container in its variant, to be filled in place.
namespace Containers {

inline QVariantMap &map(QVariant &value)
{
    return *static_cast<QVariantMap *>(value.data());
}

inline const QVariantMap &map(const QVariant &value)
{
    return *static_cast<const QVariantMap *>(value.constData());
}

inline QVariantList &list(QVariant &value)
{
    return *static_cast<QVariantList *>(value.data());
}

inline const QVariantList &list(const QVariant &value)
{
    return *static_cast<const QVariantList *>(value.constData());
}

/// Adds an entry with an invalid value, and returns that value.
inline QVariant &insertMulti(QVariantMap &map, const QString &key)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED // 5.15 moved it to QMultiMap, which is no QVariantMap
        QVariant &value = map.insertMulti(key, QVariant()).value();
    QT_WARNING_POP
    return value;
}

/// Appends `value`, in the cheaper of two ways: what is no number, false or true is moved.
inline void append(QVariantList &list, QVariant &value)
{
    if (value.userType() <= QMetaType::Double) {
        list.append(value);
    } else {
        list.append(QVariant());
        list.last().swap(value);
    }
}

} // namespace Containers

/// Builds a variant tree from a stream of tokens, with nothing to spare: a container grows in its
/// place, a value is moved into it. For the readers that report events.
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
        } else if (m_stack.back().userType() == QMetaType::QVariantMap) {
            Containers::insertMulti(Containers::map(m_stack.back()), m_keys.back()).swap(value);
            m_keys.pop_back();
        } else {
            Containers::append(Containers::list(m_stack.back()), value);
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
