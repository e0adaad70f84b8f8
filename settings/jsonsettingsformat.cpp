#include "settings/jsonsettingsformat.h"

#include "global/qtcompat.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "json/keyhash.h"
#include "json/varianttree.h"

#include <QIODevice>
#include <QVector>

#include <climits>
#include <cstring>

namespace {

const QLatin1Char Separator('/');

void pushContainer(const QVariant &value, QVector<const QVariant *> &pending)
{
    if (VariantTree::isContainer(value))
        pending.append(&value);
}

// The two texts in one, in a block of just that size.
QString joined(const QString &head, const QString &tail)
{
    QString text(head.size() + tail.size(), Qt::Uninitialized);
    QChar *const out = text.data();
    std::memcpy(out, head.constData(), size_t(head.size()) * sizeof(QChar));
    std::memcpy(out + head.size(), tail.constData(), size_t(tail.size()) * sizeof(QChar));
    return text;
}

// Whether the first `size` characters of the two texts are there and the same.
bool haveSameStart(const QString &a, const QString &b, int size)
{
    return a.size() >= size && b.size() >= size
        && std::memcmp(a.constData(), b.constData(), size_t(size) * sizeof(QChar)) == 0;
}

// Finds keys that contain a separator. The keys of a configuration come again and again in the same
// string, which is not searched a second time.
class SeparatorSearch
{
public:
    SeparatorSearch() : m_plain() {}

    bool finds(const QString &key)
    {
        const QChar *&plain = m_plain[quintptr(key.constData()) / 16 % PlainKeys];
        if (plain == key.constData())
            return false;
        plain = key.constData();
        return key.contains(Separator);
    }

private:
    enum { PlainKeys = 256 };
    const QChar *m_plain[PlainKeys];
};

// Whether a key anywhere inside `root` contains a separator.
bool hasSeparatorInKeys(const QVariant &root)
{
    SeparatorSearch search;
    QVector<const QVariant *> pending;
    pushContainer(root, pending);
    while (!pending.isEmpty()) {
        const QVariant &node = *pending.last();
        pending.pop_back();
        if (VariantTree::isList(node)) {
            const QVariantList &list = VariantTree::list(node);
            for (int i = 0; i < list.size(); ++i)
                pushContainer(list.at(i), pending);
            continue;
        }
        const QVariantMap &map = VariantTree::map(node);
        for (QVariantMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it) {
            if (search.finds(it.key()))
                return true;
            pushContainer(it.value(), pending);
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
    // document's. Unknown is outside of all arrays.
    enum Order { Unknown, Document, Sorted };

    struct Level : VariantTree::Level {
        explicit Level(Order elementOrder = Unknown) : order(elementOrder), position(1) {}
        Order order;
        int position; ///< of the next element, from 1
    };

    void visitEntries();
    void visitMember(Level &level);
    void visitElement(Level &level);
    void visit(const QString &name, const QVariant &value, Order order);
    void open(const QVariant &container);
    void openArray(const QVariant &array);
    void close();
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
    if (!VariantTree::isContainer(root)) {
        store(m_prefix.left(m_prefix.size() - 1), root);
        leaveComponent();
        return;
    }
    open(root);
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
    close();
}

void Flattener::visitMember(Level &level)
{
    const QVariantMap::const_iterator member = level.member++;
    visit(member.key(), member.value(), level.order);
}

void Flattener::visitElement(Level &level)
{
    const int position = level.position;
    ++level.index;
    if (level.order == Sorted)
        level.position = nextInTextualOrder(position, level.list.size());
    else
        level.position = position + 1;
    visit(QString::number(position), level.list.at(position - 1), level.order);
}

// A scalar is stored without appending its name to the prefix. A name that contains a separator still
// leaves its first pieces there, as leaveComponent() does for a container.
void Flattener::visit(const QString &name, const QVariant &value, Order order)
{
    if (VariantTree::isContainer(value)) {
        m_prefix += name;
        m_prefix += Separator;
        open(value);
        return;
    }
    store(joined(m_prefix, name), value);
    if (order != Sorted)
        m_prefix += name.left(name.lastIndexOf(Separator) + 1);
}

void Flattener::open(const QVariant &container)
{
    if (VariantTree::isList(container)) {
        openArray(container);
        return;
    }
    m_levels.append(Level(inheritedOrder()));
    m_levels.last().open(VariantTree::map(container));
}

void Flattener::openArray(const QVariant &array)
{
    Order elementOrder = inheritedOrder();
    const QVariantList &list = VariantTree::list(array);
    if (elementOrder == Unknown)
        elementOrder = hasSeparatorInKeys(array) ? Document : Sorted;
    if (elementOrder != Sorted)
        storeSize(list.size());
    m_levels.append(Level(elementOrder));
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

inline void Flattener::store(const QString &key, const QVariant &value)
{
    QtCompat::insertLast(m_map, key, value);
}

void Flattener::storeSize(int size)
{
    store(joined(m_prefix, QLatin1String("size")), size);
}

// The component is found by searching, not by its length: of a key that contains a separator only the
// last piece is taken away, and the pieces in front of it stay. That has always been so.
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

// One string for names that come again and again, as those of a configuration do.
class SharedNames
{
public:
    // Good until the next call.
    const QString &name(const QChar *begin, int size)
    {
        const ushort *const units = reinterpret_cast<const ushort *>(begin);
        QString &known = m_names[keyHash(units, size) % Buckets];
        const bool isKnown = known.size() == size
            && std::memcmp(known.constData(), begin, size_t(size) * sizeof(QChar)) == 0;
        if (!isKnown)
            known = QString(begin, size);
        return known;
    }

private:
    enum { Buckets = 128 };

    QString m_names[Buckets];
};

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

    QVariant take()
    {
        QVariant root;
        root.swap(m_root);
        return root;
    }

    void set(const QString &path, const QVariant &value);

private:
    Q_DISABLE_COPY(TreeBuilder)

    // A node on the open way, and how many characters of the path lead to it.
    struct Level {
        QVariant *node;
        int pathSize;
    };

    void openDownTo(const QString &path);

    QVariant m_root;
    QString m_path;
    QVector<Level> m_levels;
    SharedNames m_names;
};

void TreeBuilder::set(const QString &path, const QVariant &value)
{
    while (!haveSameStart(path, m_path, m_levels.last().pathSize))
        m_levels.pop_back();
    openDownTo(path);
    m_path = path;

    QVariant &node = *m_levels.last().node;
    const int begin = m_levels.last().pathSize;
    const QString &name = m_names.name(path.constData() + begin, path.size() - begin);
    if (name == QLatin1String("size"))
        makeArray(node, value.toInt());
    else
        QtCompat::insertLast(makeObject(node), name, value);
}

void TreeBuilder::openDownTo(const QString &path)
{
    for (;;) {
        const int begin = m_levels.last().pathSize;
        const int separator = path.indexOf(Separator, begin);
        if (separator < 0)
            return;
        QVariantMap &object = makeObject(*m_levels.last().node);
        const QString &name = m_names.name(path.constData() + begin, separator - begin);
        const Level level = { &object[name], separator + 1 };
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
    QVariant tree = unflattenMap(map);
    const VariantTree::Disposer disposer(tree);
    device.write(JsonWriter::serialize(tree, 4, 0));
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
    return tree.take();
}

QVariant unflattenMap(const QSettings::SettingsMap &map)
{
    TreeBuilder tree((QVariant()));
    for (QSettings::SettingsMap::const_iterator it = map.constBegin(); it != map.constEnd(); ++it)
        tree.set(it.key(), it.value());
    return tree.take();
}
