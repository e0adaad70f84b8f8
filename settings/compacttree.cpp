#include "settings/compacttree.h"

#include "json/varianttree.h"
#include "settings/backwardflattener.h"

#include <algorithm>

namespace {

class ByName
{
public:
    explicit ByName(const QVector<CompactEntry> &entries) : m_entries(entries.constData()) {}

    bool operator()(int a, int b) const
    {
        return qMapLessThanKey(m_entries[a].name, m_entries[b].name);
    }

private:
    const CompactEntry *m_entries;
};

} // namespace

// What a BackwardFlattener asks of a tree.
class CompactTree::View
{
public:
    typedef CompactNode Node;

    class Level
    {
    public:
        Level()
            : m_entries(nullptr),
              m_first(nullptr),
              m_current(nullptr),
              m_isArray(false),
              m_positions(0)
        {
        }

        Level(CompactEntry *entries, const int *first, const CompactNode &container)
            : m_entries(entries),
              m_first(first),
              m_current(first + container.extent.count),
              m_isArray(container.extent.kind == CompactNode::Array),
              m_positions(m_isArray ? count() : 0)
        {
        }

        bool isArray() const { return m_isArray; }
        int count() const { return int(m_current - m_first); }

        bool stepBack()
        {
            if (m_isArray) {
                if (!m_positions.stepBack())
                    return false;
                m_current = m_first + m_positions.index();
                return true;
            }
            if (m_current == m_first)
                return false;
            --m_current;
            return true;
        }

        KeyName name() const
        {
            return m_isArray ? m_positions.name() : KeyName(m_entries[*m_current].name);
        }

        Node &node() { return m_entries[*m_current].node; }

    private:
        CompactEntry *m_entries;
        const int *m_first;
        const int *m_current;
        bool m_isArray;
        BackwardPositions m_positions;
    };

    explicit View(CompactTree *tree)
        : m_entries(tree->m_places), m_closed(tree->m_closed.constData())
    {
    }

    static bool isContainer(const Node &node) { return node.extent.kind != CompactNode::Scalar; }

    Level open(Node &container) const
    {
        return Level(m_entries, m_closed + container.extent.first, container);
    }

    static void store(Node &node, const QString &key, QSettings::SettingsMap &map)
    {
        QtCompat::insertMultiFirst(map, key, QVariant()).swap(node.scalar);
    }

private:
    CompactEntry *const m_entries;
    const int *const m_closed;
};

void CompactTree::flatten(QSettings::SettingsMap &map)
{
    View view(this);
    if (!view.isContainer(m_root)) {
        map.insert(QString(), m_root.scalar);
        return;
    }
    QSettings::SettingsMap entries = BackwardFlattener<View>(&view, QString()).flatten(m_root);
    addEntries(entries, map);
}

// Drops the node when the tree has no place for it.
inline void CompactTree::add(CompactNode &container, QString &name, CompactNode &node)
{
    if (m_isPlain && m_count == m_entries.size())
        grow();
    if (!m_isPlain) {
        node = CompactNode();
        return;
    }
    CompactEntry &entry = m_places[m_count];
    qSwap(entry.name, name);
    entry.node.swap(node);
    m_open.append(m_count++);
    ++container.extent.count;
}

void CompactTree::addMember(CompactNode &object, QString &, QString &key, CompactNode &node)
{
    if (m_isPlain && m_separators.finds(key))
        giveUp();
    add(object, key, node);
    key = QString();
}

void CompactTree::addElement(CompactNode &array, CompactNode &node)
{
    QString noName;
    add(array, noName, node);
}

void CompactTree::endObject(CompactNode &object)
{
    int *const last = m_open.data() + m_open.size();
    if (m_isPlain && !sortMembers(last - object.extent.count, last))
        giveUp();
    close(object);
}

// False when a name comes twice. Files that were written by this library have their keys in order.
bool CompactTree::sortMembers(int *first, int *last) const
{
    const ByName byName(m_entries);
    if (!std::is_sorted(first, last, byName))
        std::sort(first, last, byName);
    const auto notAscending = [&byName](int a, int b) { return !byName(a, b); };
    return std::adjacent_find(first, last, notAscending) == last;
}

// Moves the entries of a container to those of the closed ones.
void CompactTree::close(CompactNode &container)
{
    if (!m_isPlain)
        return;
    const int first = m_open.size() - int(container.extent.count);
    container.extent.first = m_closed.size();
    m_closed.append(m_open.constData() + first, int(container.extent.count));
    m_open.resize(first);
}

// By half and no more: the toolkit's own growth goes up to the next power of two, which would cost more
// memory than a tree of variants. Its arrays end at 2 GB.
void CompactTree::grow()
{
    const int mostEntries = 1 << 25;
    if (m_count >= mostEntries) {
        giveUp();
        return;
    }
    m_entries.reserve(m_count == 0 ? 32 : m_count + m_count / 2);
    m_entries.resize(m_entries.capacity());
    m_places = m_entries.data();
}

void CompactTree::giveUp()
{
    m_isPlain = false;
    m_entries.clear();
    m_places = nullptr;
    m_count = 0;
    m_open.clear();
    m_closed.clear();
}
