// SPDX-License-Identifier: MIT
#ifndef RANDOMTREES_H
#define RANDOMTREES_H

#include "global/qtcompat.h"

#include <QSettings>
#include <QStringList>
#include <QVariant>

#include <random>

/// Trees and settings maps by chance, the same ones in every run. Keys are the kind that a path of
/// components joined by "/" has trouble with; they repeat, within one object as well.
class RandomTrees
{
public:
    enum Keys { AnyKeys, KeysWithoutSeparator };

    explicit RandomTrees(unsigned int seed, Keys keys = AnyKeys) : m_engine(seed), m_keys(keys) {}

    QVariant tree(int depth = 5)
    {
        const int kind = depth == 0 ? 0 : below(5);
        if (kind < 2)
            return scalar();
        return kind == 2 ? QVariant(array(depth)) : QtCompat::toVariant(object(depth));
    }

    QSettings::SettingsMap settingsMap()
    {
        QSettings::SettingsMap map;
        for (int count = below(20); count > 0; --count) {
            QVariant &entry = map[path()];
            entry = settingsValue();
        }
        return map;
    }

private:
    int below(int limit) { return int(m_engine() % unsigned(limit)); }

    QString key()
    {
        static const char *const keys[] = { "",  "size", "1",  "10", "01",   "a-b", "a b",
                                            "a", "b",    "2",  "3",  "Size", "z",   "11",
                                            "/", "a/b",  "//", "/a", "a/" };
        const int count = int(sizeof keys / sizeof keys[0]);
        const int countWithSeparator = 5;
        return QLatin1String(keys[below(m_keys == AnyKeys ? count : count - countWithSeparator)]);
    }

    QVariant scalar()
    {
        switch (below(7)) {
        case 0:
            return QVariant();
        case 1:
            return below(2) == 1;
        case 2:
            return QString::number(below(4));
        case 3:
            return 0.5 * below(8);
        case 4:
            return 1000000000000LL + below(3);
        default:
            return below(5) - 1;
        }
    }

    // Now and then with more than nine elements, where the order of the positions as text is no
    // longer the order of the document.
    QVariantList array(int depth)
    {
        QVariantList list;
        for (int count = below(8) == 0 ? 10 + below(14) : below(4); count > 0; --count)
            list.append(tree(depth - 1));
        return list;
    }

    QtCompat::MultiMap object(int depth)
    {
        QtCompat::MultiMap map;
        for (int count = below(5); count > 0; --count) {
            QVariant &member = QtCompat::insertMulti(map, key());
            member = tree(depth - 1);
        }
        return map;
    }

    QString path()
    {
        QStringList components;
        for (int count = 1 + below(3); count > 0; --count)
            components.append(below(5) == 0 ? QString(QLatin1String("size")) : key());
        return components.join(QLatin1String("/"));
    }

    // Settings can hold more than a parser makes: lists, objects and lists of strings.
    QVariant settingsValue()
    {
        switch (below(12)) {
        case 0:
            return tree(2);
        case 1:
            return QStringList(QString::number(below(9)));
        default:
            return scalar();
        }
    }

    std::mt19937 m_engine;
    const Keys m_keys;
};

#endif // RANDOMTREES_H
