// SPDX-License-Identifier: MIT
#ifndef QTCOMPAT_H
#define QTCOMPAT_H

// Not part of the public interface, never installed.
//
// The one place that knows how Qt 4.8, Qt 5.15 and Qt 6 differ. Everything else in the library is
// written once, against the names below.

#include <QByteArray>
#include <QChar>
#include <QIODevice>
#include <QMap>
#include <QString>
#include <QVariant>

#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
#include <QTextCodec>
#endif
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QStringRef>
#else
#include <QStringView>

#include <limits>
#endif

// Qt 4 has no name for this yet.
#ifndef Q_ALWAYS_INLINE
#define Q_ALWAYS_INLINE __attribute__((always_inline)) inline
#endif

// A string from a literal, which Qt 5 keeps in the library's constant data: nothing is allocated. A macro,
// because the literal becomes UTF-16 when it is compiled.
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
#define NUV_STRING(literal) QString(QLatin1String(literal))
#else
#define NUV_STRING(literal) QStringLiteral(literal)
#endif

class QScriptEngine;
class QWebFrame;

namespace QtCompat {

/// The class whose ValueOwnership enumeration QWebFrame::addToJavaScriptWindowObject() takes.
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
typedef QScriptEngine ScriptOwnership;
#else
typedef QWebFrame ScriptOwnership;
#endif

/// The bytes up to the first NUL, one character each. Qt 4 applies the codec that was installed with
/// QTextCodec::setCodecForCStrings(); Qt 5 no longer has one and reads Latin-1.
inline QString fromAscii(const QByteArray &bytes)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return QString::fromAscii(bytes.constData());
#else
    return QString::fromLatin1(bytes.constData());
#endif
}

/// The character for a single byte, with the codec rule of fromAscii().
inline QChar charFromAscii(char byte)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return QChar::fromAscii(byte);
#else
    return QLatin1Char(byte);
#endif
}

/// `size` bytes as text, byte by byte: what appending charFromAscii() of each one gives. A codec
/// sees one byte at a time, so multi-byte sequences are never combined.
inline QString fromAsciiBytes(const char *bytes, int size)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    if (QTextCodec::codecForCStrings()) {
        QString text(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            text[i] = charFromAscii(bytes[i]);
        return text;
    }
#endif
    return QString::fromLatin1(bytes, size);
}

/// All bytes of `device`; none when they are more than Qt 4 and Qt 5 have room for, where places in a
/// document are of type int.
inline QByteArray readAll(QIODevice &device)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const qint64 largest = std::numeric_limits<int>::max() - 24;
    if (device.size() > largest)
        return QByteArray();
    QByteArray bytes = device.readAll();
    if (bytes.size() > largest)
        bytes.clear();
    return bytes;
#else
    return device.readAll();
#endif
}

/// `digits` as a number, 0 when they are none. What is too large for a double is infinite, but 0 in Qt 4.
inline double toDouble(const QByteArray &digits)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    bool isNumber = false;
    const double number = digits.toDouble(&isNumber);
    // Of the two conversions only that of strings knows infinity.
    return isNumber ? number : QString::fromLatin1(digits).toDouble();
#else
    return digits.toDouble();
#endif
}

/// A whole string, to be joined with others.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
inline QStringRef view(const QString &text)
{
    return QStringRef(&text);
}
#else
inline QStringView view(const QString &text)
{
    return text;
}
#endif

/// The map of an object in a variant tree: it keeps all entries of a key that comes more than once. In
/// Qt 6 a QVariantMap cannot do that.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
typedef QVariantMap MultiMap;
#else
typedef QMultiMap<QString, QVariant> MultiMap;
#endif

/// The type of a variant that holds a MultiMap.
inline int multiMapType()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QMetaType::QVariantMap;
#else
    // Of a type that does not fit into them, variants would share one.
    static_assert(QTypeInfo<MultiMap>::isRelocatable, "");
    return QMetaType::fromType<MultiMap>().id();
#endif
}

/// Whether `value` holds a map that is no MultiMap: only callers bring such.
inline bool isOtherMap(const QVariant &value)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    Q_UNUSED(value);
    return false;
#else
    return value.userType() == QMetaType::QVariantMap;
#endif
}

inline QVariant toVariant(const MultiMap &map)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return map;
#else
    return QVariant::fromValue(map);
#endif
}

/// The map in `value`, empty when that holds something else.
inline MultiMap toMultiMap(const QVariant &value)
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return value.toMap();
#else
    return value.userType() == multiMapType() ? value.value<MultiMap>() : MultiMap(value.toMap());
#endif
}

/// Adds an entry to those that `map` already holds under `key`, with an invalid value, and
/// returns that value. The new entry is the first of its key in iteration order.
inline QVariant &insertMulti(MultiMap &map, const QString &key)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return map.insertMulti(key, QVariant()).value();
#elif QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return map.insert(key, QVariant()).value();
#else
    // 5.15 moved it to QMultiMap, which a QVariantMap is not.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QVariant &value = map.insertMulti(key, QVariant()).value();
    QT_WARNING_POP
    return value;
#endif
}

/// Inserts an invalid value or replaces by it, for a key that is expected to sort directly before `next`:
/// cheap where it does, the same result where it does not. Qt 4 has no hinted insertion. A MultiMap
/// must not hold the key yet.
template<typename Map>
typename Map::iterator insertBefore(Map &map, typename Map::const_iterator next, const QString &key)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    Q_UNUSED(next);
    return map.insert(key, QVariant());
#else
    return map.insert(next, key, QVariant());
#endif
}

} // namespace QtCompat

#endif // QTCOMPAT_H
