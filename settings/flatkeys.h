// SPDX-License-Identifier: MIT
#ifndef FLATKEYS_H
#define FLATKEYS_H

#include <QChar>
#include <QLatin1String>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <vector>

/// \file
/// The flat keys of QSettings, and the two ways between them and a variant tree:
///
/// | tree                                      | flat keys                                           |
/// |-------------------------------------------|-----------------------------------------------------|
/// | {"a": 1, "b": {"c": true}}                | a = 1, b/c = true                                   |
/// | {"list": [10, 20]}                        | list/1 = 10, list/2 = 20, list/size = 2             |
/// | {"list": []}                              | list/size = 0                                       |
/// | {"none": null, "empty": {}}               | none = an invalid variant                           |
///
/// Neither way takes stack in proportion to the depth of the tree.

/// What joins the components of a flat key.
const QLatin1Char FlatKeySeparator('/');

/// The name under which an array holds the number of its elements.
const QLatin1String FlatKeySize("size");

/// Adds the flat keys of `value` to `map`; what a key held before is replaced. `prefix` is the path of
/// `value` with a "/" after it, empty for the root. On return its last component is cut off.
///
/// The tree is used up: its values are moved to the map, and a container in `value` is gone on return.
void flattenVariant(QString &prefix, QSettings::SettingsMap &map, QVariant &value);

/// Sets values in a tree, one after the other; nobody else may change the tree in between.
class Unflattener
{
public:
    /// Keeps a reference to `root`.
    explicit Unflattener(QVariant &root);

    /// Sets `value` under the path `key`. What is in the way of the path is replaced by an object. A last
    /// component "size" turns the object that it is set in into an array of so many elements, from the
    /// entries "1", "2", … that the object holds by then; its other entries are dropped. Keys must
    /// therefore come in ascending order, as a settings map has them.
    void set(const QString &key, const QVariant &value);

private:
    Q_DISABLE_COPY(Unflattener)

    struct Component {
        int end; ///< the place of the separator after it in the key; -1 for the root
        QVariant *node;
    };

    void openParent(const QString &key);

    QString m_key; ///< the last one
    std::vector<Component> m_path; ///< from the root to the parent of what was set last
};

#endif // FLATKEYS_H
