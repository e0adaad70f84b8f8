#ifndef COMPACTTREE_H
#define COMPACTTREE_H

#include "settings/separatorsearch.h"

#include <QSettings>
#include <QString>
#include <QVarLengthArray>
#include <QVariant>
#include <QVector>

/// A scalar, or a container that has its entries somewhere in its tree. A new one is null.
struct CompactNode {
    enum Kind { Scalar, Object, Array };

    struct Extent {
        int first; ///< where the entries begin
        uint count : 30;
        uint kind : 2;
    };

    CompactNode() : extent() {}

    void swap(CompactNode &other)
    {
        scalar.swap(other.scalar);
        qSwap(extent, other.extent);
    }

    QVariant scalar;
    Extent extent;
};

/// A member, or an element, which has no name.
struct CompactEntry {
    QString name;
    CompactNode node;
};
Q_DECLARE_TYPEINFO(CompactEntry, Q_MOVABLE_TYPE);

/// A document on its way into flat keys: what the parser builds where nobody asks for variants. All its
/// entries stand in one array, so that making and freeing it costs a fraction of a tree of variants.
///
/// It holds plain documents only: those without a "/" in their keys and without a key that comes twice
/// in an object. Of any other one it drops the entries.
class CompactTree
{
public:
    CompactTree() : m_isPlain(true), m_places(nullptr), m_count(0) {}

    /// Whether the document was a plain one, and not too large for an array.
    bool isPlain() const { return m_isPlain; }

    /// The root of the document, null until it is put here.
    CompactNode &root() { return m_root; }

    /// Moves the values into `map`, under their flat keys; what a key held before is replaced. The tree
    /// must be plain, and is used up.
    void flatten(QSettings::SettingsMap &map);

    // What JsonDriver asks of its builder.
    typedef CompactNode Value;
    static QVariant &scalar(CompactNode &node) { return node.scalar; }
    static void beginObject(CompactNode &object) { object.extent.kind = CompactNode::Object; }
    void addMember(CompactNode &object, QString &lastKey, QString &key, CompactNode &node);
    void endObject(CompactNode &object);
    static void beginArray(CompactNode &array) { array.extent.kind = CompactNode::Array; }
    void addElement(CompactNode &array, CompactNode &node);
    void endArray(CompactNode &array) { close(array); }
    static void dispose(CompactNode &) {}

private:
    Q_DISABLE_COPY(CompactTree)

    class View;

    void add(CompactNode &container, QString &name, CompactNode &node);
    void close(CompactNode &container);
    bool sortMembers(int *first, int *last) const;
    void grow();
    void giveUp();

    typedef QVarLengthArray<int, 64> Indices;

    CompactNode m_root;
    bool m_isPlain;
    QVector<CompactEntry> m_entries; ///< in the order of the text, and free ones behind them
    CompactEntry *m_places; ///< where they lie
    int m_count; ///< of those in use
    Indices m_open; ///< the entries of the open containers, the innermost's last
    Indices m_closed; ///< the entries of the others, each one's together, members by their names
    SeparatorSearch m_separators;
};

#endif // COMPACTTREE_H
