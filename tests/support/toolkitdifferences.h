// SPDX-License-Identifier: MIT
#ifndef TOOLKITDIFFERENCES_H
#define TOOLKITDIFFERENCES_H

#include <QLocale>
#include <QMetaMethod>
#include <QProcess>

#ifdef QT_GUI_LIB
#include <QImage>
#include <QPixmap>
#include <QWheelEvent>
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
#include <QApplication>
#include <QDesktopWidget>
#else
#include <QGuiApplication>
#include <QScreen>
#endif
#endif

#ifdef QT_NETWORK_LIB
#include <QSsl>
#endif

#include <limits>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

#if QT_VERSION >= QT_VERSION_CHECK(5, 0, 0)
#include <QLoggingCategory>
#endif

/// Where the toolkits give different answers, and why. Tests ask here, so that no other test
/// source needs to know which toolkit it is built with.
namespace ToolkitDifferences {

/// What QTcpServer::incomingConnection() takes.
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
typedef int SocketDescriptor;
#else
typedef qintptr SocketDescriptor;
#endif

inline bool isQt4()
{
    return QT_VERSION < QT_VERSION_CHECK(5, 0, 0);
}

inline bool isQt6()
{
    return QT_VERSION >= QT_VERSION_CHECK(6, 0, 0);
}

/// The one of two values that this toolkit gives, where a test states both. Qt 6 is like Qt 5.
template<typename Value>
Value either(Value withQt4, Value withQt5)
{
    return isQt4() ? withQt4 : withQt5;
}

/// The same where Qt 6 differs from Qt 5.
template<typename Value>
Value either(Value withQt4, Value withQt5, Value withQt6)
{
    return isQt6() ? withQt6 : either(withQt4, withQt5);
}

#if defined(QT_NETWORK_LIB) && !defined(QT_NO_SSL) && !defined(QT_NO_OPENSSL)
/// The newest version of TLS in which a client has introduced itself by the time that it judges the
/// server.
inline QSsl::SslProtocol tlsWithEarlyIntroduction()
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return QSsl::TlsV1;
#else
    return QSsl::TlsV1_2;
#endif
}
#endif

/// A host of a server on this machine that can be trusted: Qt 4 knows no certificates for addresses.
inline QLatin1String trustedLocalHost()
{
    return QLatin1String(isQt4() ? "localhost" : "127.0.0.1");
}

/// Another name of the same machine.
inline QLatin1String otherLocalHost()
{
    return QLatin1String(isQt4() ? "127.0.0.1" : "localhost");
}

/// What the toolkit says of a server that refuses a client by its certificate.
inline QLatin1String refusalByCertificate()
{
    return QLatin1String(isQt4() ? "SSL handshake failed" : "alert unknown ca");
}

/// Qt 4 reads RSA and DSA keys.
inline bool readsKeysOfCurves()
{
    return !isQt4();
}

/// The words of the toolkit for a page that the server does not have, up to its address.
inline QLatin1String failedTransfer()
{
    return QLatin1String(isQt4() ? "Error downloading " : "Error transferring ");
}

/// Whether the engine draws the borders of layers that it is asked for.
inline bool hasBordersOfLayers()
{
    return !isQt4();
}

/// The engine of Qt 4 does not keep all that it makes for a function of the page that a signal calls while
/// the page sets a property: its garbage collection ends the process after many such documents.
inline bool marksWhatItCallsBack()
{
    return !isQt4();
}

/// Whether the engine still heeds the quota of a site in the next start.
inline bool keepsQuotas()
{
    return !isQt4();
}

/// Whether scripts can draw with WebGL, and whether they can without being asked. Qt 4 can be built
/// without OpenGL.
inline bool canDrawWithWebGL()
{
#ifdef QT_NO_OPENGL
    return !isQt4();
#else
    return true;
#endif
}

inline bool drawsWithWebGLUnasked()
{
    return !isQt4();
}

/// What the engine says of a script that ends too early.
inline QLatin1String scriptTooShort()
{
    return QLatin1String(isQt4() ? "SyntaxError: Parse error"
                                 : "SyntaxError: Unexpected end of script");
}

/// The line of the first line of a page's script after its tag, in a console message.
inline int firstLineOfScript()
{
    return isQt4() ? 1 : 2;
}

/// How many cookies of one domain a jar of the toolkit's takes, where that is fewer than `wanted`.
inline int cookiesOfOneDomain(int wanted)
{
    return isQt4() ? 50 : wanted;
}

inline qint64 processId(const QProcess &process)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return process.pid();
#else
    return process.processId();
#endif
}

/// As in "say(QString)".
inline QByteArray signatureOf(const QMetaMethod &method)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return method.signature();
#else
    return method.methodSignature();
#endif
}

/// Qt 4 converts text to a number in the default locale first and in the "C" locale only when that
/// fails; Qt 5 knows the "C" locale alone. So "1,5" is 1.5 under Qt 4 where the comma is the
/// decimal sign, and no number anywhere else.
inline bool readsCommaAsDecimalSign()
{
    return isQt4() && QLocale().decimalPoint() == QLatin1Char(',');
}

/// What a number becomes that is too large for a double: infinity under Qt 5 and 6, zero under Qt 4,
/// which takes it for no number at all.
inline double overflownNumber()
{
    return either(0.0, std::numeric_limits<double>::infinity());
}

/// Qt 6 ends the process where there is no memory for what a function makes that must not throw, such as
/// an entry of a hash.
inline bool endsWithoutMemory()
{
    return isQt6();
}

/// How QSettings writes a file that is there: Qt 4 empties it and writes into it; Qt 5 writes a new
/// one next to it, which takes its place when it is complete.
inline bool replacesWrittenFiles()
{
    return !isQt4();
}

/// Keeps the process's debug messages back until the end of the block. Qt 5 can be told so, and an
/// environment variable may tell it; Qt 4 always hands them on.
class WithoutDebugMessages
{
public:
    WithoutDebugMessages() { setRules("*.debug=false"); }
    ~WithoutDebugMessages() { setRules(""); }

private:
    Q_DISABLE_COPY(WithoutDebugMessages)

    static void setRules(const char *rules)
    {
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
        Q_UNUSED(rules)
#else
        QLoggingCategory::setFilterRules(QLatin1String(rules));
#endif
    }
};

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
/// A codec of QTextCodec::setCodecForCStrings() until the end of the block. Qt 4 reads the text of
/// bytes with it; Qt 5 has no such codec, so nothing is changed there.
class CodecForCStrings
{
public:
    explicit CodecForCStrings(const char *name) { set(QTextCodec::codecForName(name)); }
    explicit CodecForCStrings(QTextCodec *codec) { set(codec); }
    ~CodecForCStrings() { set(nullptr); }

private:
    Q_DISABLE_COPY(CodecForCStrings)

    static void set(QTextCodec *codec)
    {
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
        QTextCodec::setCodecForCStrings(codec);
#else
        Q_UNUSED(codec)
#endif
    }
};

/// A codec that leaves no byte as it is, ASCII included: byte b is the character U+0400 + b. It notes
/// the longest piece that it was ever given. The toolkit owns it.
class MovingCodec : public QTextCodec
{
public:
    static MovingCodec *instance()
    {
        static MovingCodec *const codec = new MovingCodec;
        return codec;
    }

    QByteArray name() const override { return "moving"; }
    int mibEnum() const override { return -4711; }
    int longestPiece() const { return m_longestPiece; }

protected:
    QString convertToUnicode(const char *bytes, int size, ConverterState *) const override
    {
        m_longestPiece = qMax(m_longestPiece, size);
        QString text;
        for (int i = 0; i < size; ++i)
            text += QChar(ushort(0x400 + static_cast<uchar>(bytes[i])));
        return text;
    }

    QByteArray convertFromUnicode(const QChar *text, int size, ConverterState *) const override
    {
        QByteArray bytes;
        for (int i = 0; i < size; ++i)
            bytes += char(text[i].unicode() - 0x400);
        return bytes;
    }

private:
    MovingCodec() : m_longestPiece(0) {}

    mutable int m_longestPiece;
};
#else
/// Qt 6 has no codecs at all.
class MovingCodec
{
public:
    static MovingCodec *instance() { return nullptr; }
    static int longestPiece() { return 0; }
};

class CodecForCStrings
{
public:
    explicit CodecForCStrings(const char *) {}
    explicit CodecForCStrings(MovingCodec *) {}
    ~CodecForCStrings() {}

private:
    Q_DISABLE_COPY(CodecForCStrings)
};
#endif

#ifdef QT_GUI_LIB
/// One notch of a mouse wheel over a widget, towards its user.
inline QWheelEvent wheelNotch(const QPoint &at, const QPoint &globalAt)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return QWheelEvent(at, globalAt, -120, Qt::NoButton, Qt::NoModifier);
#else
    return QWheelEvent(at, globalAt, QPoint(), QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                       Qt::NoScrollPhase, false);
#endif
}

/// What the whole screen shows, all windows on it.
inline QImage screen()
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return QPixmap::grabWindow(QApplication::desktop()->winId()).toImage();
#else
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
#endif
}
#endif

} // namespace ToolkitDifferences

#endif // TOOLKITDIFFERENCES_H
