// SPDX-License-Identifier: MIT
#include "settings/flatkeys.h"

#include "global/qtcompat.h"
#include "json/varianttree.h"

#include <QStringBuilder>

#include <algorithm>
#include <vector>

namespace {

// The component is found by searching for the separator before it, not by its length: of a key that
// contains a separator only the last piece is taken away, and the pieces before it stay. That is on
// purpose, because files rely on it.
void leaveComponent(QString &prefix)
{
    prefix.truncate(prefix.lastIndexOf(FlatKeySeparator, -2) + 1);
}

bool hasSeparator(const QString &name)
{
    const QChar *const end = name.constData() + name.size();
    return std::find(name.constData(), end, QChar(FlatKeySeparator)) != end;
}

// Most arrays are short.
QString elementName(int position)
{
    if (position < 10)
        return QString(QChar('0' + position));
    return QString::number(position);
}

// Walks a tree with a list of the open containers instead of recursion. Values are moved out of it, and a
// container is freed as soon as it is left, so that the map can have its memory.
class Flattener
{
public:
    Flattener(QString &prefix, QSettings::SettingsMap &map)
        : m_prefix(prefix),
          m_isPath(prefix.isEmpty() || prefix.endsWith(FlatKeySeparator)),
          m_map(map),
          m_next(map.end()),
          m_isElement(false)
    {
    }

    ~Flattener();

    void flatten(QVariant &root);

private:
    Q_DISABLE_COPY(Flattener)

    struct OpenContainer {
        OpenContainer() : index(0) {}
        QVariant container; ///< taken out of its parent
        QtCompat::MultiMap::iterator member; ///< the next one of an object
        int index; ///< of the next element of an array
        QString
            sizeKey; ///< of an array; made when it is opened, as its elements may change the prefix
    };

    void open(QVariant &container);
    void visitEntries();
    void visitMembers(OpenContainer &object, size_t depth);
    void visitElements(OpenContainer &array, size_t depth);
    void visit(const QString &name, QVariant &value);
    void store(const QString &key, QVariant &value);

    QString &m_prefix;
    const bool m_isPath; ///< whether the prefix is as it should be
    QSettings::SettingsMap &m_map;
    QSettings::SettingsMap::iterator m_next; ///< before which the next key most likely comes
    bool m_isElement; ///< whether the next key is the first of an element of an array, or its size
    std::vector<OpenContainer> m_containers;
};

// What an exception left here may be as deep as the document.
Flattener::~Flattener()
{
    for (OpenContainer &opened : m_containers)
        VariantTree::dispose(opened.container);
}

void Flattener::flatten(QVariant &root)
{
    if (!VariantTree::isContainer(root)) {
        m_map.insert(m_prefix.left(m_prefix.size() - 1), root);
        leaveComponent(m_prefix);
        return;
    }
    m_prefix.reserve(256); // for most paths
    open(root);
    while (!m_containers.empty())
        visitEntries();
}

void Flattener::open(QVariant &container)
{
    m_containers.push_back(OpenContainer());
    OpenContainer &opened = m_containers.back();
    opened.container.swap(container);
    if (VariantTree::isMap(opened.container)) {
        opened.member = VariantTree::map(opened.container).begin();
    } else {
        opened.sizeKey = m_prefix + FlatKeySize;
    }
}

// Visits the entries of the innermost container, up to one that opens another, or to the end. The walk
// steps on before it visits: opening a container may move the others. The size of an array is stored last,
// as it sorts after the elements; none of them can have the same key.
void Flattener::visitEntries()
{
    const size_t depth = m_containers.size();
    OpenContainer &innermost = m_containers.back();
    if (VariantTree::isMap(innermost.container))
        visitMembers(innermost, depth);
    else
        visitElements(innermost, depth);
    if (m_containers.size() != depth)
        return;
    if (VariantTree::isList(innermost.container)) {
        m_isElement = true;
        QVariant size = int(VariantTree::list(innermost.container).size());
        store(innermost.sizeKey, size);
    }
    m_containers.pop_back();
    leaveComponent(m_prefix);
}

void Flattener::visitMembers(OpenContainer &object, size_t depth)
{
    const QtCompat::MultiMap::iterator end = VariantTree::map(object.container).end();
    while (m_containers.size() == depth && object.member != end) {
        const QtCompat::MultiMap::iterator member = object.member++;
        visit(member.key(), member.value());
    }
}

void Flattener::visitElements(OpenContainer &array, size_t depth)
{
    QVariantList &list = VariantTree::list(array.container);
    while (m_containers.size() == depth && array.index < list.size()) {
        QVariant &element = list[array.index++];
        m_isElement = true;
        visit(elementName(array.index), element);
    }
}

void Flattener::visit(const QString &name, QVariant &value)
{
    const bool isContainer = VariantTree::isContainer(value);
    if (!isContainer)
        store(QtCompat::view(m_prefix) % name, value);
    if (!isContainer && m_isPath && !hasSeparator(name))
        return; // entering and leaving the component would change nothing
    m_prefix += name;
    m_prefix += FlatKeySeparator;
    if (isContainer)
        open(value);
    else
        leaveComponent(m_prefix);
}

// A key most often sorts directly after the one before it, and before what that one came before. Not so in
// an array: its element 10 comes before its element 2.
void Flattener::store(const QString &key, QVariant &value)
{
    QSettings::SettingsMap::iterator stored = QtCompat::insertBefore(m_map, m_next, key);
    stored.value().swap(value);
    if (m_isElement)
        m_next = ++stored;
    m_isElement = false;
}

} // namespace

void flattenVariant(QString &prefix, QSettings::SettingsMap &map, QVariant &value)
{
    Flattener(prefix, map).flatten(value);
}
