#include "settings/jsonsettingsformat.h"

#include "global/qtcompat.h"
#include "json/varianttree.h"
#include "settings/backwardflattener.h"
#include "settings/separatorsearch.h"

#include <QVector>

#include <cstring>

namespace {

const QLatin1Char Separator('/');

// What a BackwardFlattener asks of a tree.
class VariantView
{
public:
    typedef const QVariant Node;

    class Level
    {
    public:
        Level() : m_list(nullptr), m_positions(0) {}

        explicit Level(const QVariantMap &map)
            : m_begin(map.constBegin()), m_member(map.constEnd()), m_list(nullptr), m_positions(0)
        {
        }

        explicit Level(const QVariantList &list) : m_list(&list), m_positions(list.size()) {}

        bool isArray() const { return m_list; }
        int count() const { return m_list->size(); }

        bool stepBack()
        {
            if (m_list)
                return m_positions.stepBack();
            if (m_member == m_begin)
                return false;
            --m_member;
            return true;
        }

        KeyName name() const { return m_list ? m_positions.name() : KeyName(m_member.key()); }

        const QVariant &node() const
        {
            return m_list ? m_list->at(m_positions.index()) : m_member.value();
        }

    private:
        QVariantMap::const_iterator m_begin;
        QVariantMap::const_iterator m_member;
        const QVariantList *m_list;
        BackwardPositions m_positions;
    };

    static bool isContainer(const QVariant &node) { return VariantTree::isContainer(node); }

    static Level open(const QVariant &container)
    {
        return VariantTree::isMap(container) ? Level(VariantTree::map(container))
                                             : Level(VariantTree::list(container));
    }

    static void store(const QVariant &node, const QString &key, QSettings::SettingsMap &map)
    {
        QtCompat::insertMultiFirst(map, key, node);
    }
};

void pushContainer(const QVariant &value, QVector<const QVariant *> &pending)
{
    if (VariantTree::isContainer(value))
        pending.append(&value);
}

bool areEqual(const QString &a, const QString &b)
{
    return a.size() == b.size()
        && std::memcmp(a.constData(), b.constData(), size_t(a.size()) * sizeof(QChar)) == 0;
}

// Looks for the keys that make the order of storing visible. Behind one that contains a separator the
// prefix is not restored, so that the order decides what the later keys are; and where a key comes twice
// in an object, the order decides which of two values stays.
class PlainTreeCheck
{
public:
    bool passes(const QVariant &root);

private:
    bool passes(const QVariantMap &map);

    SeparatorSearch m_separators;
    QVector<const QVariant *> m_pending;
};

bool PlainTreeCheck::passes(const QVariant &root)
{
    pushContainer(root, m_pending);
    while (!m_pending.isEmpty()) {
        const QVariant &node = *m_pending.last();
        m_pending.pop_back();
        if (VariantTree::isMap(node)) {
            if (!passes(VariantTree::map(node)))
                return false;
            continue;
        }
        const QVariantList &list = VariantTree::list(node);
        for (int i = 0; i < list.size(); ++i)
            pushContainer(list.at(i), m_pending);
    }
    return true;
}

bool PlainTreeCheck::passes(const QVariantMap &map)
{
    const QString *previous = nullptr;
    for (QVariantMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
        if (m_separators.finds(it.key()) || (previous && areEqual(*previous, it.key())))
            return false;
        previous = &it.key();
        pushContainer(it.value(), m_pending);
    }
    return true;
}

// The component is found by searching, not by its length: of a key that contains a separator only the
// last piece is taken away, and the pieces in front of it stay. That has always been so.
void leaveComponent(QString &prefix)
{
    prefix.truncate(prefix.lastIndexOf(Separator, -2) + 1);
}

// Walks any tree in its own order, with a list of the open containers in place of recursion.
class Flattener
{
public:
    Flattener(QString &prefix, QSettings::SettingsMap &map) : m_prefix(prefix), m_map(map) {}

    void flatten(const QVariant &root);

private:
    typedef VariantTree::Level Level;

    void visitEntries();
    void visitMember(Level &level);
    void visitElement(Level &level);
    void visit(const QString &name, const QVariant &value);
    void visit(const QVariant &value);

    QString &m_prefix;
    QSettings::SettingsMap &m_map;
    QVector<Level> m_levels;
};

void Flattener::flatten(const QVariant &root)
{
    visit(root);
    while (!m_levels.isEmpty())
        visitEntries();
}

// Visits the entries of the innermost container, up to one that opens another, or to the end. The walk
// steps on before it visits: opening a level may move the others.
void Flattener::visitEntries()
{
    const int depth = m_levels.size();
    Level &level = m_levels.last();
    while (level.hasNext()) {
        if (level.isObject)
            visitMember(level);
        else
            visitElement(level);
        if (m_levels.size() != depth)
            return;
    }
    m_levels.pop_back();
    leaveComponent(m_prefix);
}

void Flattener::visitMember(Level &level)
{
    const QVariantMap::const_iterator member = level.member++;
    visit(member.key(), member.value());
}

void Flattener::visitElement(Level &level)
{
    const QVariant &element = level.list.at(level.index);
    ++level.index;
    visit(QString::number(level.index), element);
}

void Flattener::visit(const QString &name, const QVariant &value)
{
    m_prefix += name;
    m_prefix += Separator;
    visit(value);
}

void Flattener::visit(const QVariant &value)
{
    if (!VariantTree::isContainer(value)) {
        m_map.insert(m_prefix.left(m_prefix.size() - 1), value);
        leaveComponent(m_prefix);
        return;
    }
    m_levels.append(Level());
    if (VariantTree::isMap(value)) {
        m_levels.last().open(VariantTree::map(value));
        return;
    }
    m_levels.last().list = VariantTree::list(value);
    m_map.insert(m_prefix + QLatin1String("size"), m_levels.last().list.size());
}

// Whether what is appended to the prefix is what leaving it cuts off again.
bool isPath(const QString &prefix)
{
    return prefix.isEmpty() || prefix.endsWith(Separator);
}

} // namespace

void flattenVariant(QString &prefix, QSettings::SettingsMap &map, const QVariant &value)
{
    if (VariantTree::isContainer(value) && isPath(prefix) && PlainTreeCheck().passes(value)) {
        VariantView view;
        QSettings::SettingsMap entries =
            BackwardFlattener<VariantView>(&view, prefix).flatten(value);
        addEntries(entries, map);
        leaveComponent(prefix);
        return;
    }
    Flattener(prefix, map).flatten(value);
}
