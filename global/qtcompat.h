#ifndef QTCOMPAT_H
#define QTCOMPAT_H

// Not part of the public interface, never installed.
//
// The one place that knows how Qt 4.8 and Qt 5.15 differ. Everything else in the library is written
// once, against the names below.

#include <QByteArray>
#include <QChar>
#include <QMap>
#include <QString>
#include <QVariant>

#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
#include <QTextCodec>
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

/// Adds an entry beside those that `map` already holds under `key`, with an invalid value, and
/// returns that value. The new entry is the first of its key in iteration order.
inline QVariant &insertMulti(QVariantMap &map, const QString &key)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return map.insertMulti(key, QVariant()).value();
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
/// cheap where it does, the same result where it does not. Qt 4 has no hinted insertion.
inline QVariantMap::iterator insertBefore(QVariantMap &map, QVariantMap::const_iterator next,
                                          const QString &key)
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
