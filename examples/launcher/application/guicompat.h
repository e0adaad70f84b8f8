// SPDX-License-Identifier: MIT
#ifndef GUICOMPAT_H
#define GUICOMPAT_H

// Not part of the public interface, never installed.
//
// What qtcompat.h is for the toolkit's core, for its windows and its page engine.

#include <QApplication>
#include <QFileInfo>
#include <QRect>
#include <QScopedPointer>
#include <QWebSettings>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

// Where qWebKitVersion() is declared.
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
#include <qwebkitversion.h>
#else
#include <qwebkitglobal.h>
#endif

#if QT_VERSION < QT_VERSION_CHECK(5, 14, 0)
#include <QDesktopWidget>
#else
#include <QScreen>
#endif

namespace GuiCompat {

/// The part of a window's screen that windows may cover.
inline QRect availableGeometry(const QWidget &window)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 14, 0)
    return QApplication::desktop()->availableGeometry(&window);
#else
    return window.screen()->availableGeometry();
#endif
}

/// The application object. Qt 4 needs a display for one that can show windows, so there it is at first one that
/// cannot: who asks for help may have no display. Options such as -style are the toolkit's, which takes them
/// out of the command line only with a display.
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
class Application
{
public:
    /// `argc` and `argv` must outlive the object.
    Application(int &argc, char **argv)
        : m_argc(argc), m_argv(argv), m_copiedArgc(argc), m_copiedArgv(argv, argv + argc + 1)
    {
        if (std::any_of(argv + 1, argv + argc, isOfTheToolkit))
            openDisplay();
        else
            m_application.reset(
                new QApplication(m_copiedArgc, m_copiedArgv.data(), QApplication::Tty));
    }

    /// To be called before a window is made.
    void openDisplay()
    {
        if (m_application && QApplication::type() != QApplication::Tty)
            return;
        m_application.reset();
        m_application.reset(new QApplication(m_argc, m_argv));
    }

private:
    Q_DISABLE_COPY(Application)

    static bool isOfTheToolkit(const char *argument)
    {
        return argument[0] == '-' && argument[1] != '-' && std::strlen(argument) > 2;
    }

    int &m_argc;
    char **m_argv;
    int m_copiedArgc;
    std::vector<char *> m_copiedArgv; ///< the toolkit takes its own options out
    QScopedPointer<QApplication> m_application;
};
#else
class Application
{
public:
    Application(int &argc, char **argv) : m_application(argc, argv) {}
    void openDisplay() {}

private:
    QApplication m_application;
};
#endif

/// Tells the engine whether a page is offered databases. In Qt 4 they are one switch of the whole process,
/// which each page sets to what it inherits: there they stay on for all from the first page that is offered
/// some, and no document finds openDatabase where it is not offered.
inline void switchDatabases(QWebSettings *page, bool offered)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    Q_UNUSED(page)
    if (offered)
        QWebSettings::globalSettings()->setAttribute(QWebSettings::OfflineStorageDatabaseEnabled,
                                                     true);
#else
    page->setAttribute(QWebSettings::OfflineStorageDatabaseEnabled, offered);
#endif
}

/// Where the local storage of an application is, given where it would have its own. Qt 4 has one for all pages
/// of the process, in the directory that the first of them names: with one for each, what is found would
/// depend on which application came first.
inline QString localStorageFolder(const QString &own)
{
#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    return QFileInfo(own).path() + QLatin1String("/applications");
#else
    return own;
#endif
}

/// Keeps those of the toolkit's messages, while it lives, that somebody waits for. All others go where they
/// went before. There is one at a time.
class MessageKeeper
{
public:
    typedef bool (*Filter)(QtMsgType, const QString &);

    /// `isWanted` may be asked on any thread.
    explicit MessageKeeper(Filter isWanted)
    {
        Shared &all = shared();
        all.isWanted = isWanted;
        all.kept.clear();
        all.before = install(nullptr);
        install(keep);
    }
    ~MessageKeeper() { install(shared().before); }

    QString messages() const { return shared().kept; }

private:
    Q_DISABLE_COPY(MessageKeeper)

#if QT_VERSION < QT_VERSION_CHECK(5, 0, 0)
    typedef QtMsgHandler Handler;

    static Handler install(Handler handler)
    {
        return qInstallMsgHandler(handler);
    }

    static void keep(QtMsgType type, const char *message)
    {
        if (hasKept(type, QString::fromLocal8Bit(message)))
            return;
        if (shared().before)
            shared().before(type, message);
        else
            std::fprintf(stderr, "%s\n", message); // as the toolkit does without a handler
    }
#else
    typedef QtMessageHandler Handler;

    static Handler install(Handler handler)
    {
        return qInstallMessageHandler(handler);
    }

    static void keep(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        if (!hasKept(type, message))
            shared().before(type, context, message);
    }
#endif

    // A handler is a function alone.
    struct Shared {
        Filter isWanted;
        QString kept;
        Handler before;
    };

    static Shared &shared()
    {
        static Shared all = { nullptr, QString(), nullptr };
        return all;
    }

    static bool hasKept(QtMsgType type, const QString &message)
    {
        const bool isWanted = shared().isWanted(type, message);
        if (isWanted)
            shared().kept += message;
        return isWanted;
    }
};

} // namespace GuiCompat

#endif // GUICOMPAT_H
