#ifndef LAUNCHER_H
#define LAUNCHER_H

#include <AppConfig>
#include "program/options.h"

#include <QList>
#include <QObject>
#include <QPointer>

class ApplicationView;

/// Opens the applications that the command line names and, when asked, takes their pictures and puts
/// questions to their pages.
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

private Q_SLOTS:
    void openForPage(const QString &tag);
    void pageSettled();
    void pageFailed(const QString &what);
    void finish();

private:
    bool findApplication(const QString &tag, AppConfig *config) const;
    void open(const QString &tag, const AppConfig &config);
    bool showKept(const QString &tag);
    void ask(const ApplicationView &view);
    void takePicture(ApplicationView &view);
    QString pictureFile(const QString &tag) const;

    Options m_options;
    QList<QPointer<ApplicationView>> m_views; ///< null where the user closed one
    int m_loading; ///< pages that neither loaded nor failed so far
    int m_pictures; ///< taken so far
    bool m_finished; ///< what was asked for
    bool m_failed;
};

#endif // LAUNCHER_H
