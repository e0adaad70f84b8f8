#include "settings/jsonsettingsformat.h"

#include "global/qtcompat.h"
#include "json/jsonlexer.h"
#include "json/jsonparser.h"
#include "json/jsonwriter.h"
#include "json/keyhash.h"
#include "json/varianttree.h"
#include "settings/compacttree.h"

#include <QIODevice>
#include <QVector>

#include <climits>
#include <cstring>

namespace {

const QLatin1Char Separator('/');

// Whether the first `size` characters of the two texts are there and the same.
bool haveSameStart(const QString &a, const QString &b, int size)
{
    return a.size() >= size && b.size() >= size
        && std::memcmp(a.constData(), b.constData(), size_t(size) * sizeof(QChar)) == 0;
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

bool parse(const QByteArray &json, CompactTree &tree, QString *errorMessage)
{
    JsonLexer lexer(json);
    JsonDriver<CompactTree> driver(&tree);
    if (!driver.parse(&lexer)) {
        *errorMessage = driver.error().toString();
        return false;
    }
    tree.root().swap(driver.result());
    return true;
}

// For the documents that a compact tree cannot hold.
void readThroughVariants(const QByteArray &json, QSettings::SettingsMap &map)
{
    QVariant tree = parseJson(json, nullptr);
    const VariantTree::Disposer disposer(tree);
    QString prefix;
    flattenVariant(prefix, map, tree);
}

} // namespace

bool readJsonSettings(QIODevice &device, QSettings::SettingsMap &map)
{
    QByteArray json = device.readAll();
    CompactTree tree;
    QString errorMessage;
    if (!parse(json, tree, &errorMessage)) {
        // As the debug stream of Qt 4 writes a string: in quotes and with a space behind it.
        qWarning("\"%s\" ", qPrintable(errorMessage));
        return true;
    }
    if (!tree.isPlain()) {
        readThroughVariants(json, map);
        return true;
    }
    json.clear(); // makes room for the keys
    tree.flatten(map);
    return true;
}

bool writeJsonSettings(QIODevice &device, const QSettings::SettingsMap &map)
{
    QVariant tree = unflattenMap(map);
    const VariantTree::Disposer disposer(tree);
    device.write(JsonWriter::serialize(tree, 4, 0));
    return true;
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
