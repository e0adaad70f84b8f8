// SPDX-License-Identifier: MIT
#ifndef LAUNCHER_H
#define LAUNCHER_H

#include <AppConfig>
#include "program/options.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QScopedPointer>

class ApplicationView;
class StandstillWatch;

/// Opens the applications that the command line names. What else is to be done with them, a LauncherLayer
/// adds.
class Launcher : public QObject
{
    Q_OBJECT

public:
    enum ExitStatus { Succeeded = 0, Failed = 1, WrongUsage = 2 };

    explicit Launcher(const Options &options);
    ~Launcher();

    /// Opens the applications, or none when one of them is not configured: then it says so and
    /// returns false.
    bool start();

    /// Shows them until the user closes the last one, or until all that was asked for is done. Returns
    /// the status for the program to end with.
    int run();

    const Options &options() const;

    /// Whether a page neither loaded nor failed so far.
    bool isLoading() const;

    QList<ApplicationView *> visibleViews() const;
    int viewCount() const; ///< of all that were opened so far

    /// The program is to end with Failed.
    void setFailed();

    /// As above, for as long as something is not done that was asked for.
    void setPending(bool pending);

    /// Whether a script that never ends ends the program, with Failed. Without it, it is reported. To
    /// be called before start().
    void setEndsAtStandstill(bool ends);

Q_SIGNALS:
    void opened(ApplicationView *view); ///< and configured; its page is loaded afterwards
    void settled(); ///< all pages have loaded or failed

private Q_SLOTS:
    void openForPage(const QString &tag);
    void pageSettled();
    void pageFailed(const QString &what);
    void pageRecovered();

private:
    bool findApplication(const QString &tag, AppConfig *config) const;
    void open(const QString &tag, const AppConfig &config);
    void watchScripts();
    ApplicationView *findView(const QString &tag) const;

    QScopedPointer<StandstillWatch> m_watch; ///< outlives the pages, which run scripts at their end
    Options m_options;
    QList<QPointer<ApplicationView>> m_views; ///< null where the user closed one
    int m_loading; ///< pages that neither loaded nor failed so far
    bool m_endsAtStandstill;
    bool m_pending;
    bool m_failed;
    QStringList m_waiting; ///< tags of the applications whose page failed, and is tried again
};

#endif // LAUNCHER_H
