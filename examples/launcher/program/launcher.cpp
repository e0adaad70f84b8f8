#include "program/launcher.h"

#include <WebAppSettings>
#include "application/applicationpage.h"
#include "application/applicationview.h"
#include "program/configurationfile.h"
#include "program/console.h"
#include "program/launcherlayer.h"
#include "effects/remoteinspector.h"
#include "values/valuekind.h"

#include <QApplication>

namespace {

// The library hands out what stands in an application's own section. That an application without a
// certificate of its own uses the global one is this launcher's decision.
void inheritCertificate(AppConfig *config)
{
    AppConfig global;
    if (config->getCertPath().isValid() || !getWebAppSettings()->getGlobalConfig(global))
        return;
    config->setCertPath(global.getCertPath());
    config->setCertPrivateKey(global.getCertPrivateKey());
    config->setCertPassPhrase(global.getCertPassPhrase());
}

unsigned int globalInspectorPort()
{
    unsigned int port = 0;
    getWebAppSettings()->getGlobalRemoteInspectorPort(port);
    return port <= 65535 ? port : 0;
}

void printGlobals()
{
    Console::print(QLatin1String("Configuration file: ") + Console::shown(ConfigurationFile::path())
                   + QLatin1Char('\n'));
    if (globalInspectorPort() != 0)
        Console::print(
            QString(QLatin1String("Remote inspector port: %1\n")).arg(globalInspectorPort()));
}

// There is one inspector in a process: at the first application's own port, else at the global one.
void openGlobalInspector(const AppConfig &first, const ApplicationView &view)
{
    const QVariant own = first.getRemoteInspectorPort();
    if (ValueKinds::port.accepts(own) && own.toUInt() != 0)
        return;
    const QString problem = RemoteInspector::open(view.page(), quint16(globalInspectorPort()));
    if (!problem.isEmpty())
        Console::warning(QString(QLatin1String("RemoteInspectorPort = %1 has no effect: %2"))
                             .arg(globalInspectorPort())
                             .arg(problem));
}

} // namespace

Launcher::Launcher(const Options &options)
    : m_options(options), m_loading(0), m_pending(false), m_failed(false)
{
    if (LauncherLayer::installed())
        LauncherLayer::installed()->attach(this);
}

Launcher::~Launcher()
{
    for (int i = 0; i < m_views.size(); ++i)
        delete m_views.at(i);
}

bool Launcher::start()
{
    if (ConfigurationFile::path().isEmpty()) {
        Console::error(QLatin1String("no configuration file: ") + ConfigurationFile::whyMissing());
        return false;
    }
    QList<AppConfig> configs;
    for (int i = 0; i < m_options.tags.size(); ++i) {
        AppConfig config;
        if (findApplication(m_options.tags.at(i), &config))
            configs.append(config);
    }
    if (configs.size() < m_options.tags.size())
        return false;

    printGlobals();
    m_loading = configs.size();
    for (int i = 0; i < configs.size(); ++i)
        open(m_options.tags.at(i), configs.at(i));
    return true;
}

int Launcher::run()
{
    if (m_loading > 0)
        QApplication::exec();
    return m_failed || m_pending || !m_waiting.isEmpty() ? Failed : Succeeded;
}

const Options &Launcher::options() const
{
    return m_options;
}

bool Launcher::isLoading() const
{
    return m_loading > 0;
}

QList<ApplicationView *> Launcher::visibleViews() const
{
    QList<ApplicationView *> visible;
    for (int i = 0; i < m_views.size(); ++i) {
        if (m_views.at(i) && m_views.at(i)->isVisible())
            visible.append(m_views.at(i));
    }
    return visible;
}

int Launcher::viewCount() const
{
    return m_views.size();
}

void Launcher::setFailed()
{
    m_failed = true;
}

void Launcher::setPending(bool pending)
{
    m_pending = pending;
}

bool Launcher::findApplication(const QString &tag, AppConfig *config) const
{
    if (getWebAppSettings()->getAppConfig(tag, *config)) {
        inheritCertificate(config);
        return true;
    }
    Console::error(QString(QLatin1String("%1 has no application \"%2\", or is not a file of "
                                         "version 1"))
                       .arg(ConfigurationFile::path(), tag));
    return false;
}

void Launcher::open(const QString &tag, const AppConfig &config)
{
    const LauncherLayer *layer = LauncherLayer::installed();
    ApplicationView *view =
        new ApplicationView(tag, layer ? layer->pageMaker(m_options) : ApplicationPage::make);
    m_views.append(view);
    connect(view, SIGNAL(loaded()), SLOT(pageSettled()));
    connect(view, SIGNAL(failed(QString)), SLOT(pageFailed(QString)));
    connect(view, SIGNAL(recovered()), SLOT(pageRecovered()));
    connect(view, SIGNAL(openRequested(QString)), SLOT(openForPage(QString)));

    view->resize(m_options.size);
    if (m_views.size() == 1)
        openGlobalInspector(config, *view);
    view->apply(config);
    view->setTimeout(m_options.timeout);
    emit opened(view);
    view->start();
}

// A view that was closed, and kept, is there at once.
bool Launcher::showKept(const QString &tag)
{
    for (int i = 0; i < m_views.size(); ++i) {
        ApplicationView *view = m_views.at(i);
        if (!view || view->tag() != tag || view->isVisible())
            continue;
        Console::note(tag, QLatin1String("is shown again"));
        view->show();
        return true;
    }
    return false;
}

// A page asks for the application beside its own.
void Launcher::openForPage(const QString &tag)
{
    AppConfig config;
    if (showKept(tag) || !findApplication(tag, &config))
        return;
    ++m_loading;
    open(tag, config);
}

// The user reads an error page as long as they like.
void Launcher::pageFailed(const QString &what)
{
    ApplicationView *view = qobject_cast<ApplicationView *>(sender());
    Console::error(view->tag() + QLatin1String(": ") + what);
    if (view->isTriedAgain()) {
        m_waiting.append(view->tag());
        pageSettled();
        return;
    }
    m_failed = true;
    if (!view->showsErrorPage()) {
        view->setAttribute(Qt::WA_DeleteOnClose); // there is nothing to be kept
        view->close();
    }
    pageSettled();
}

// What failed first does not count any more.
void Launcher::pageRecovered()
{
    m_waiting.removeAll(qobject_cast<ApplicationView *>(sender())->tag());
}

void Launcher::pageSettled()
{
    --m_loading;
    if (m_loading == 0)
        emit settled();
}
