#include "settings/flatkeys.h"

#include "global/qtcompat.h"
#include "json/varianttree.h"

#include <QStringBuilder>
#include <QVector>

namespace {

typedef VariantTree::Level Level;

// The component is found by searching for the separator before it, not by its length: of a key that
// contains a separator only the last piece is taken away, and the pieces before it stay. That is on
// purpose, because files rely on it.
void leaveComponent(QString &prefix)
{
    prefix.truncate(prefix.lastIndexOf(FlatKeySeparator, -2) + 1);
}

void appendContainer(const QVariant &value, QVector<const QVariant *> &containers)
{
    if (VariantTree::isContainer(value))
        containers.append(&value);
}

// Whether a key of the tree contains a separator, and thus changes the prefix of what comes after it.
bool hasSeparators(const QVariant &root)
{
    QVector<const QVariant *> pending(1, &root);
    while (!pending.isEmpty()) {
        const QVariant &node = *pending.last();
        pending.pop_back();
        if (VariantTree::isList(node)) {
            const QVariantList &list = VariantTree::list(node);
            for (int i = 0; i < list.size(); ++i)
                appendContainer(list.at(i), pending);
            continue;
        }
        const QVariantMap &map = VariantTree::map(node);
        for (QVariantMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
            if (it.key().contains(FlatKeySeparator))
                return true;
            appendContainer(it.value(), pending);
        }
    }
    return false;
}

// The position in an array that follows in the order of the texts: 1, 10, 11, 12, 2, … 9 for an array of
// twelve. To be asked once for each element, at first with 0.
int nextPosition(int position, int count)
{
    if (position > 0 && position <= count / 10)
        return position * 10;
    if (position == count)
        position /= 10;
    ++position;
    while (position % 10 == 0)
        position /= 10;
    return position;
}

// Walks a tree with a list of the open containers instead of recursion.
//
// Where no key contains a separator, nothing depends on the order of storing. The flat keys are then made
// in their own order, in which each goes to the end of the map without a search: that halves the cost.
class Flattener
{
public:
    Flattener(QString &prefix, QSettings::SettingsMap &map)
        : m_prefix(prefix), m_map(map), m_isInKeyOrder(false)
    {
    }

    void flatten(const QVariant &root);

private:
    struct OpenContainer {
        Level level;
        int position; ///< of the element that was visited last
    };

    void open(const QVariant &container);
    void visitEntries();
    void visit(const QString &name, const QVariant &value);
    void store(const QString &name, const QVariant &value);
    void close();

    QString &m_prefix;
    QSettings::SettingsMap &m_map;
    bool m_isInKeyOrder;
    QVector<OpenContainer> m_containers;
};

void Flattener::flatten(const QVariant &root)
{
    if (!VariantTree::isContainer(root)) {
        m_map.insert(m_prefix.left(m_prefix.size() - 1), root);
        leaveComponent(m_prefix);
        return;
    }
    m_isInKeyOrder =
        (m_prefix.isEmpty() || m_prefix.endsWith(FlatKeySeparator)) && !hasSeparators(root);
    m_prefix.reserve(256); // for most paths
    open(root);
    while (!m_containers.isEmpty())
        visitEntries();
}

// The size of an array comes before its elements, but sorts after them.
void Flattener::open(const QVariant &container)
{
    const OpenContainer opened = { Level(container), 0 };
    m_containers.append(opened);
    if (!opened.level.isObject && !m_isInKeyOrder)
        store(FlatKeySize, opened.level.list.size());
}

void Flattener::close()
{
    const Level &level = m_containers.last().level;
    if (!level.isObject && m_isInKeyOrder)
        store(FlatKeySize, level.list.size());
    m_containers.pop_back();
    leaveComponent(m_prefix);
}

// Visits the entries of the innermost container, up to one that opens another, or to the end. The walk
// steps on before it visits: opening a container may move the others.
void Flattener::visitEntries()
{
    const int depth = m_containers.size();
    Level &level = m_containers.last().level;
    int &position = m_containers.last().position;
    while (level.hasNext()) {
        ++level.index;
        if (level.isObject) {
            const QVariantMap::const_iterator member = level.member++;
            visit(member.key(), member.value());
        } else {
            position = m_isInKeyOrder ? nextPosition(position, level.list.size()) : level.index;
            visit(QString::number(position), level.list.at(position - 1));
        }
        if (m_containers.size() != depth)
            return;
    }
    close();
}

void Flattener::visit(const QString &name, const QVariant &value)
{
    const bool isContainer = VariantTree::isContainer(value);
    if (!isContainer)
        store(name, value);
    if (!isContainer && m_isInKeyOrder)
        return;
    m_prefix += name;
    m_prefix += FlatKeySeparator;
    if (isContainer)
        open(value);
    else
        leaveComponent(m_prefix);
}

void Flattener::store(const QString &name, const QVariant &value)
{
    QtCompat::insertLast(m_map, m_prefix % name, value);
}

} // namespace

void flattenVariant(QString &prefix, QSettings::SettingsMap &map, const QVariant &value)
{
    Flattener(prefix, map).flatten(value);
}
