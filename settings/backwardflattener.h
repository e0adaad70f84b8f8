#ifndef BACKWARDFLATTENER_H
#define BACKWARDFLATTENER_H

#include "global/qtcompat.h"
#include "json/varianttree.h"

#include <QSettings>
#include <QString>
#include <QVarLengthArray>
#include <QVector>

#include <cstring>

/// A component of a flat key. Does not own its text.
struct KeyName {
    KeyName(const QChar *begin, int length) : text(begin), size(length) {}
    explicit KeyName(const QString &name) : text(name.constData()), size(name.size()) {}

    const QChar *text;
    int size;
};

/// The path of the open containers, each with a "/" behind it.
class KeyPath
{
public:
    explicit KeyPath(const QString &start) { append(start.constData(), start.size()); }

    int size() const { return m_text.size(); }

    void enter(const KeyName &name)
    {
        append(name.text, name.size);
        m_text.append(QLatin1Char('/'));
    }

    void cutBack(int size) { m_text.resize(size); }

    /// The path with a name behind it, in a block of just that size.
    QString key(const KeyName &name) const
    {
        QString text(m_text.size() + name.size, Qt::Uninitialized);
        QChar *const out = text.data();
        std::memcpy(out, m_text.constData(), size_t(m_text.size()) * sizeof(QChar));
        std::memcpy(out + m_text.size(), name.text, size_t(name.size) * sizeof(QChar));
        return text;
    }

private:
    void append(const QChar *text, int size) { m_text.append(text, size); }

    QVarLengthArray<QChar, 256> m_text;
};

/// The positions of an array, numbered from 1, in the descending order of their texts: 9, … 2, 12, 11,
/// 10, 1 for an array of twelve.
class BackwardPositions
{
public:
    explicit BackwardPositions(int count) : m_count(count), m_position(0), m_firstDigit(0) {}

    /// Goes to the next position, at first to the last one; false behind the first.
    bool stepBack()
    {
        if (m_position == 0)
            m_position = qMin(9, m_count);
        else if (m_position % 10 == 0)
            return goTo(m_position / 10);
        else
            --m_position;
        while (m_position != 0 && m_position <= m_count / 10)
            m_position = m_position <= (m_count - 9) / 10 ? m_position * 10 + 9 : m_count;
        return goTo(m_position);
    }

    /// From 0.
    int index() const { return m_position - 1; }

    /// Good until the next step.
    KeyName name() const { return KeyName(m_digits + m_firstDigit, MostDigits - m_firstDigit); }

private:
    enum { MostDigits = 10 };

    bool goTo(int position)
    {
        m_position = position;
        m_firstDigit = MostDigits;
        for (; position != 0; position /= 10)
            m_digits[--m_firstDigit] = QLatin1Char(char('0' + position % 10));
        return m_position != 0;
    }

    int m_count;
    int m_position;
    int m_firstDigit;
    QChar m_digits[MostDigits];
};

/// Makes the flat keys of a tree from the last one to the first, which costs least: each goes to the
/// beginning of the map, where the toolkit finds its place without a search. Only for trees that have no
/// separator in their keys and no key twice in an object: nothing depends on the order of storing there.
/// Takes no stack in proportion to the depth.
///
/// Tree gives access to the tree:
///
/// | member                                               | is                                         |
/// |------------------------------------------------------|--------------------------------------------|
/// | Node                                                 | a scalar or a container                    |
/// | bool isContainer(const Node &)                       |                                            |
/// | void store(Node &, const QString &, QVariantMap &)   | puts a scalar under a key in front of all  |
/// | Level open(Node &)                                   | an open container, behind its last entry   |
/// | Level: Level()                                       | what the vector of Qt 4 fills its room with|
/// | Level: bool isArray(), int count()                   | what the container is, and its size        |
/// | Level: bool stepBack()                               | goes to the entry in front, if there is one|
/// | Level: KeyName name(), Node &node()                  | of that entry                              |
template<typename Tree>
class BackwardFlattener
{
public:
    typedef typename Tree::Node Node;

    /// Does not own `tree`. `path` is empty or ends with a separator.
    BackwardFlattener(Tree *tree, const QString &path) : m_tree(tree), m_path(path) {}

    /// The flat keys of `container`. To be called once.
    QSettings::SettingsMap flatten(Node &container)
    {
        open(container, m_path.size());
        while (!m_levels.isEmpty())
            visitEntries();
        return m_map;
    }

private:
    Q_DISABLE_COPY(BackwardFlattener)

    struct OpenLevel {
        typename Tree::Level level;
        int outerPathSize;
    };

    // The size of an array sorts behind its elements.
    void open(Node &container, int outerPathSize)
    {
        const OpenLevel opened = { m_tree->open(container), outerPathSize };
        if (opened.level.isArray())
            storeSize(opened.level.count());
        m_levels.append(opened);
    }

    // Visits the entries of the innermost container, up to one that opens another, or to the end.
    void visitEntries()
    {
        typename Tree::Level &level = m_levels.last().level;
        while (level.stepBack()) {
            Node &node = level.node();
            if (m_tree->isContainer(node)) {
                const int outerPathSize = m_path.size();
                m_path.enter(level.name());
                open(node, outerPathSize);
                return;
            }
            m_tree->store(node, m_path.key(level.name()), m_map);
        }
        m_path.cutBack(m_levels.last().outerPathSize);
        m_levels.pop_back();
    }

    void storeSize(int size)
    {
        const QString name = QLatin1String("size");
        QtCompat::insertMultiFirst(m_map, m_path.key(KeyName(name)), size);
    }

    Tree *const m_tree;
    KeyPath m_path;
    QSettings::SettingsMap m_map;
    QVector<OpenLevel> m_levels;
};

/// Adds `entries` to `map`; what a key held before is replaced.
inline void addEntries(QSettings::SettingsMap &entries, QSettings::SettingsMap &map)
{
    if (map.isEmpty()) {
        map.swap(entries);
        return;
    }
    QSettings::SettingsMap::const_iterator it = entries.constBegin();
    for (; it != entries.constEnd(); ++it)
        map.insert(it.key(), it.value());
}

#endif // BACKWARDFLATTENER_H
