#ifndef VARIANTTREE_H
#define VARIANTTREE_H

#include <QVariant>

/// Access to variant trees without copies and without recursion.
///
/// A tree can be as deep as its document has brackets, so nothing here or in the walks that use it
/// takes stack in proportion to the depth. The toolkit's own destructors do, hence dispose().
namespace VariantTree {

inline bool isMap(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantMap;
}

inline bool isList(const QVariant &value)
{
    return value.userType() == QMetaType::QVariantList;
}

/// The container in its variant, to be changed in place. Taking it out and putting it back would
/// copy it whole at every change, as long as the variant still holds it. `value` must be a map.
inline QVariantMap &map(QVariant &value)
{
    return *static_cast<QVariantMap *>(value.data());
}

inline const QVariantMap &map(const QVariant &value)
{
    return *static_cast<const QVariantMap *>(value.constData());
}

/// As map(); `value` must be a list.
inline QVariantList &list(QVariant &value)
{
    return *static_cast<QVariantList *>(value.data());
}

inline const QVariantList &list(const QVariant &value)
{
    return *static_cast<const QVariantList *>(value.constData());
}

/// Takes apart the container that `value` holds, as far as nobody else holds it. Never throws.
void disposeContainer(QVariant &value);

/// Makes `value` invalid, without recursion. Never throws.
inline void dispose(QVariant &value)
{
    if (!value.isValid())
        return;
    if (isMap(value) || isList(value))
        disposeContainer(value);
    value.clear();
}

/// Disposes of a tree at the end of a block, however the block is left.
class Disposer
{
public:
    explicit Disposer(QVariant &tree) : m_tree(tree) {}
    ~Disposer() { dispose(m_tree); }

private:
    Q_DISABLE_COPY(Disposer)
    QVariant &m_tree;
};

} // namespace VariantTree

#endif // VARIANTTREE_H
