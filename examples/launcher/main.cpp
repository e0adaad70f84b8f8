// A web application launcher in a dozen small files: it shows the applications of a configuration
// file in views of QtWebKit, with what libnuvlaunchersupport gives it.
//
//   options            what the command line asks for
//   launcher           asks the library for the applications, opens them, takes their pictures
//   configurationfile  which file the library reads, and what relative paths in it mean
//   applicationview    one application: its page, its network access and its extension object
//   applicationpage    a page with a user agent of its own
//   viewsettings       the table from a configured property to what it does to a view
//   launcherextension  what the scripts of a page can call, as window.zarexExt
//   launchernetwork    the network access of an application: a configuredaccess, which presents its
//                      clientcertificate
//   networksettings    what the configured properties do to it, with a cookiejar for lasting cookies
//   trustedauthorities whose certificates make a server trusted
//   terminationsignals the end of the program at a signal
//   console            what the launcher prints
//   userfolders        where it keeps what pages store

#include "examples/launcher/console.h"
#include "examples/launcher/launcher.h"
#include "examples/launcher/launcherextension.h"
#include "examples/launcher/launchernetwork.h"
#include "examples/launcher/options.h"
#include "examples/launcher/terminationsignals.h"
#include "examples/launcher/userfolders.h"

#include <QApplication>
#include <QWebSettings>

namespace {

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

int showApplications(const Options &options)
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
    return launcher.start() ? launcher.run() : Launcher::Failed;
}

} // namespace

int main(int argc, char **argv)
{
    runOffscreenWithoutDisplay();
    QApplication application(argc, argv);
    QApplication::setApplicationName(QLatin1String("nuv-launcher"));

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
    return showApplications(options);
}
