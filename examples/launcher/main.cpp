// SPDX-License-Identifier: MIT
// A web application launcher in small files, each with one job: it shows the applications of a
// configuration file in views of QtWebKit, with what libnuvlaunchersupport gives it.
//
// program/      the program
//   options            what the command line asks for
//   launcher           asks the library for the applications, and opens them
//   launcherlayer      what a directory adds to the launcher
//   configurationfile  which file the library reads, and what relative paths in it mean
//   terminationsignals the end of the program at a signal
//   servicemanager     is told that the launcher is ready, and that it is alive
//   standstillwatch    notices a script that never ends
//   console            what the launcher prints
//   userfolders        where it keeps what pages store
//   wholefile          replaces a file, whole or not at all
//
// application/  a web application
//   applicationview    its window: brings the page, the network access and the extension together
//   websurface         shows the page, as a widget or, in a sceneview, as an item of a scene
//   applicationpage    a page with a user agent, an errorpage and scripts of the launcher's
//   pagekeeper         asks again for a page that does not load
//   questionflood      notices a page that asks without end
//   launcherextension  what the scripts of a page can call, as window.zarexExt; with more for some
//                      applications: receiverextension, for the receiver
//   broadcastaccess    which pages find it
//   replyreport        prints what became of requests
//   documenttrail      tells the answers that are the page from those that are parts of it
//
// network/      its network access
//   launchernetwork    a configuredaccess, which decides about each request: it presents a
//                      clientcertificate, keeps localfiles from pages with a refusedreply, and sets
//                      a responselimit
//   trustedauthorities whose certificates make a server trusted
//   cookiejar          cookies that survive the program, in a cookiefile, within cookiebounds
//
// effects/      the configured properties
//   viewsettings       the table: what each one takes, works on and does, and when
//   pagesettings, enginesettings, windowsettings, networksettings, extensionsettings
//                      the effects, by what they are applied to
//   chrome, debugborders, framerate, remoteinspector, storagequota
//                      effects that are more than a call of the toolkit
//
// values/       valuekind: which values a property takes, and how they are shown
//
// unattended/   what only serves tests and pictures: --screenshot, --eval, --once and --wait. It goes by
//               deleting the directory and the line of CMakeLists.txt that names it
//   unattendedlayer    its options
//   unattended         what they ask of the launcher
//   unattendedpage     a page that waits for nobody
//   picturefile        writes a picture
//   windowpicture      what a window looks like
//   pagescript         asks a page what a script of the command line gives

#include "program/console.h"
#include "program/launcher.h"
#include "application/guicompat.h"
#include "application/launcherextension.h"
#include "network/launchernetwork.h"
#include "program/options.h"
#include "program/servicemanager.h"
#include "program/terminationsignals.h"
#include "program/userfolders.h"
#include "effects/viewsettings.h"

#include <QApplication>
#include <QWebSettings>

#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

namespace {

// The pass phrases of the configuration would stand in a core file. The limit keeps it off the disk;
// only a process that is not to be dumped is kept from a program that collects core files, too.
void leaveNoCoreFile()
{
    const rlimit nothing = { 0, 0 };
    setrlimit(RLIMIT_CORE, &nothing);
#ifdef Q_OS_LINUX
    prctl(PR_SET_DUMPABLE, 0);
#endif
}

// A file that is opened later must not have the number of a standard stream that is closed: messages would
// be written to it. A stream that nobody reads any more is no reason to end.
void keepStandardStreams()
{
    int opened;
    do {
        opened = open("/dev/null", O_RDWR); // takes the lowest number
    } while (opened >= 0 && opened <= STDERR_FILENO);
    close(opened);
    std::signal(SIGPIPE, SIG_IGN);
}

bool isSet(const char *variable)
{
    return !qgetenv(variable).isEmpty();
}

// The toolkit would end the program where it finds no display. Qt 4 does not know the variable.
void runOffscreenWithoutDisplay()
{
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY") && !isSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
}

// The engine keeps one place for the databases of all pages, and takes the working directory when it
// is not told.
void keepDatabasesAtHome()
{
    UserFolders::prepare();
    QWebSettings::setOfflineStoragePath(UserFolders::data() + QLatin1String("/databases"));
    QWebSettings::setOfflineWebApplicationCachePath(UserFolders::cache()
                                                    + QLatin1String("/applications"));
}

// The engine remembers in one place what any page has loaded, so that an application would be given
// what another one was sent for its cookies or its certificate.
void keepApplicationsApart()
{
    QWebSettings::setObjectCacheCapacities(0, 0, 0);
}

QString versionText()
{
    return QString(QLatin1String("nuv-launcher %1 (Qt %2, WebKit %3)\n"))
        .arg(QLatin1String(LAUNCHER_VERSION), QLatin1String(qVersion()), qWebKitVersion());
}

int showApplications(const Options &options, ServiceManager *serviceManager)
{
    keepDatabasesAtHome();
    keepApplicationsApart();
    LauncherExtensionFactory extensions;
    registerZarexExtFactory(&extensions);
    LauncherNetworkFactory networks;
    registerNetworkAccessManagerFactory(&networks);

    TerminationSignals endings;
    QObject::connect(&endings, SIGNAL(received()), qApp, SLOT(quit()));
    Launcher launcher(options);
    if (!launcher.start())
        return Launcher::Failed;
    serviceManager->tellReady();
    return launcher.run();
}

} // namespace

int main(int argc, char **argv)
{
    leaveNoCoreFile();
    keepStandardStreams();
    UserFolders::forgetRelativePaths();
    runOffscreenWithoutDisplay();
    GuiCompat::Application application(argc, argv);

    ServiceManager serviceManager;
    Options options;
    const QString problem = options.parse(QApplication::arguments().mid(1));
    if (!problem.isEmpty()) {
        Console::error(problem + QLatin1String("; see nuv-launcher --help"));
        return Launcher::WrongUsage;
    }
    if (options.help) {
        Console::print(Options::helpText());
        return Launcher::Succeeded;
    }
    if (options.version) {
        Console::print(versionText());
        return Launcher::Succeeded;
    }
    if (options.properties) {
        Console::print(ViewSettings::description());
        return Launcher::Succeeded;
    }
    application.openDisplay();
    QApplication::setApplicationName(QLatin1String("nuv-launcher"));
    return showApplications(options, &serviceManager);
}
