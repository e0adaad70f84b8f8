#include "settings/jsonsettingsformat.h"

#include "global/qtcompat.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "json/varianttree.h"

#include <QIODevice>
#include <QVector>

#include <climits>

namespace {

const QLatin1Char Separator('/');

// Arrays below this size have the same order in the text of their positions as in the document.
const int FirstSizeOutOfOrder = 10;

void pushContainers(const QVariant &value, QVector<const QVariant *> &pending)
{
    if (VariantTree::isMap(value) || VariantTree::isList(value))
        pending.append(&value);
}

// Whether a key anywhere inside `root` contains a separator.
bool hasSeparatorInKeys(const QVariant &root)
{
    QVector<const QVariant *> pending;
    pushContainers(root, pending);
    while (!pending.isEmpty()) {
        const QVariant &node = *pending.last();
        pending.pop_back();
        if (VariantTree::isList(node)) {
            const QVariantList &list = VariantTree::list(node);
            for (int i = 0; i < list.size(); ++i)
                pushContainers(list.at(i), pending);
            continue;
        }
        const QVariantMap &map = VariantTree::map(node);
        for (QVariantMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
            if (it.key().contains(Separator))
                return true;
            pushContainers(it.value(), pending);
        }
    }
    return false;
}

// The number that follows `position` when the numbers from 1 to `count` are sorted as text: 1, 10,
// 100, 101, … 11, 110, … 2, 20.
int nextInTextualOrder(int position, int count)
{
    if (position <= count / 10)
        return position * 10;
    while (position % 10 == 9 || position == count)
        position /= 10;
    return position + 1;
}

// Walks a tree with a list of the open containers in place of recursion.
class Flattener
{
public:
    Flattener(QString &prefix, QSettings::SettingsMap &map) : m_prefix(prefix), m_map(map) {}

    void flatten(const QVariant &root);

private:
    // The order in which an array's elements go into the map. Sorted, they always go to its end,
    // which is what makes large documents fast. Where a key contains a separator, the prefix is not
    // restored behind it and the order decides what the later keys are: then it must be the
    // document's. Unknown is the document's, too, but not looked into yet.
    enum Order { Unknown, Document, Sorted };

    // An open container and the place in it. One of map and list is in use.
    struct Level {
        explicit Level(Order elementOrder = Unknown)
            : order(elementOrder), isObject(false), index(0), position(1)
        {
        }
        Order order;
        bool isObject;
        QVariantMap map;
        QVariantMap::const_iterator member;
        QVariantList list;
        int index; ///< of the elements that were visited
        int position; ///< of the next element, from 1
    };

    void visit(const QVariant &value);
    void openObject(const QVariantMap &map);
    void openArray(const QVariant &array);
    void close();
    const QVariant &enterMember(Level &level);
    const QVariant &enterElement(Level &level);
    void store(const QString &key, const QVariant &value);
    void storeSize(int size);
    void leaveComponent();
    Order inheritedOrder() const;

    QString &m_prefix;
    QSettings::SettingsMap &m_map;
    QVector<Level> m_levels;
};

void Flattener::flatten(const QVariant &root)
{
    visit(root);
    while (!m_levels.isEmpty()) {
        Level &level = m_levels.last();
        if (level.isObject && level.member != level.map.constEnd())
            visit(enterMember(level));
        else if (!level.isObject && level.index < level.list.size())
            visit(enterElement(level));
        else
            close();
    }
}

void Flattener::visit(const QVariant &value)
{
    if (VariantTree::isMap(value)) {
        openObject(VariantTree::map(value));
    } else if (VariantTree::isList(value)) {
        openArray(value);
    } else {
        store(m_prefix.left(m_prefix.size() - 1), value);
        leaveComponent();
    }
}

void Flattener::openObject(const QVariantMap &map)
{
    m_levels.append(Level(inheritedOrder()));
    Level &level = m_levels.last();
    level.isObject = true;
    level.map = map;
    level.member = level.map.constBegin();
}

void Flattener::openArray(const QVariant &array)
{
    Order order = inheritedOrder();
    const QVariantList &list = VariantTree::list(array);
    if (order == Unknown && list.size() >= FirstSizeOutOfOrder)
        order = hasSeparatorInKeys(array) ? Document : Sorted;
    if (order != Sorted)
        storeSize(list.size());
    m_levels.append(Level(order));
    m_levels.last().list = list;
}

void Flattener::close()
{
    const Level &level = m_levels.last();
    if (!level.isObject && level.order == Sorted)
        storeSize(level.list.size());
    m_levels.pop_back();
    leaveComponent();
}

const QVariant &Flattener::enterMember(Level &level)
{
    const QVariantMap::const_iterator member = level.member++;
    m_prefix += member.key();
    m_prefix += Separator;
    return member.value();
}

const QVariant &Flattener::enterElement(Level &level)
{
    const int position = level.position;
    ++level.index;
    if (level.order == Sorted)
        level.position = nextInTextualOrder(position, level.list.size());
    else
        level.position = position + 1;
    m_prefix += QString::number(position);
    m_prefix += Separator;
    return level.list.at(position - 1);
}

void Flattener::store(const QString &key, const QVariant &value)
{
    QtCompat::insertLast(m_map, key, value);
}

void Flattener::storeSize(int size)
{
    store(m_prefix + QLatin1String("size"), size);
}

// The component is found by searching, not by its length: behind a key that contains a separator only
// the last piece of it is taken away, and the pieces in front of it stay. That has always been so.
void Flattener::leaveComponent()
{
    m_prefix.truncate(m_prefix.lastIndexOf(Separator, -2) + 1);
}

Flattener::Order Flattener::inheritedOrder() const
{
    return m_levels.isEmpty() ? Unknown : m_levels.last().order;
}

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

// The number that `key` spells in decimal without leading zeros, 0 for any other text.
int arrayPosition(const QString &key)
{
    const int longestPosition = 10;
    if (key.isEmpty() || key.size() > longestPosition || key.at(0) == QLatin1Char('0'))
        return 0;
    qint64 position = 0;
    for (int i = 0; i < key.size(); ++i) {
        const int digit = key.at(i).unicode() - '0';
        if (digit < 0 || digit > 9)
            return 0;
        position = position * 10 + digit;
    }
    return position <= INT_MAX ? int(position) : 0;
}

// Makes the object in `node` an array of `size` elements, invalid where the object has no entry for
// the position. Of several entries for one position the first counts, so it comes last here.
void makeArray(QVariant &node, int size)
{
    QVariantList list;
    for (int i = 0; i < size; ++i)
        list.append(QVariant());

    QVariantMap &object = makeObject(node);
    QVariantMap::iterator it = object.end();
    while (it != object.begin()) {
        --it;
        const int position = arrayPosition(it.key());
        if (position > 0 && position <= size)
            list[position - 1].swap(it.value());
    }
    VariantTree::dispose(node);
    node = list;
}

// Sets values in a tree that is changed in place. The way to the last path is kept open, so that
// keys in ascending order, which share most of their path, cost no search from the root.
class TreeBuilder
{
public:
    explicit TreeBuilder(const QVariant &root) : m_root(root)
    {
        const Level level = { &m_root, 0 };
        m_levels.append(level);
    }

    ~TreeBuilder() { VariantTree::dispose(m_root); }

    const QVariant &root() const { return m_root; }

    void set(const QString &path, const QVariant &value);

private:
    Q_DISABLE_COPY(TreeBuilder)

    // A node on the open way, and how many characters of the path lead to it.
    struct Level {
        QVariant *node;
        int pathSize;
    };

    void closeBehind(int pathSize);
    void openDownTo(const QString &path);

    QVariant m_root;
    QString m_path;
    QVector<Level> m_levels;
};

void TreeBuilder::set(const QString &path, const QVariant &value)
{
    int common = 0;
    while (common < path.size() && common < m_path.size() && path.at(common) == m_path.at(common))
        ++common;
    closeBehind(common);
    openDownTo(path);
    m_path = path;

    QVariant &node = *m_levels.last().node;
    const QString name = path.mid(m_levels.last().pathSize);
    if (name == QLatin1String("size"))
        makeArray(node, value.toInt());
    else
        QtCompat::insertLast(makeObject(node), name, value);
}

void TreeBuilder::closeBehind(int pathSize)
{
    while (m_levels.last().pathSize > pathSize)
        m_levels.pop_back();
}

void TreeBuilder::openDownTo(const QString &path)
{
    for (;;) {
        const int begin = m_levels.last().pathSize;
        const int separator = path.indexOf(Separator, begin);
        if (separator < 0)
            return;
        QVariantMap &object = makeObject(*m_levels.last().node);
        const Level level = { &object[path.mid(begin, separator - begin)], separator + 1 };
        m_levels.append(level);
    }
}

} // namespace

bool readJsonSettings(QIODevice &device, QSettings::SettingsMap &map)
{
    QString errorMessage;
    QVariant tree = parseJson(device.readAll(), &errorMessage);
    const VariantTree::Disposer disposer(tree);
    if (!errorMessage.isEmpty()) {
        // As the debug stream of Qt 4 writes a string: in quotes and with a space behind it.
        qWarning("\"%s\" ", qPrintable(errorMessage));
        return true;
    }
    QString prefix;
    flattenVariant(prefix, map, tree);
    return true;
}

bool writeJsonSettings(QIODevice &device, const QSettings::SettingsMap &map)
{
    TreeBuilder tree((QVariant()));
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        tree.set(it.key(), it.value());
    device.write(JsonWriter::serialize(tree.root(), 4, 0));
    return true;
}

void flattenVariant(QString &prefix, QSettings::SettingsMap &map, const QVariant &value)
{
    Flattener(prefix, map).flatten(value);
}

QVariant unflattenVariant(const QVariant &node, const QString &key, const QVariant &value)
{
    TreeBuilder tree(node);
    tree.set(key, value);
    return tree.root();
}
