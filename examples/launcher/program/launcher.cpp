// SPDX-License-Identifier: MIT
#include "program/launcher.h"

#include <WebAppSettings>
#include "application/applicationpage.h"
#include "application/applicationview.h"
#include "program/configurationfile.h"
#include "program/console.h"
#include "program/launcherlayer.h"
#include "program/standstillwatch.h"
#include "effects/remoteinspector.h"
#include "values/valuekind.h"

#include <QApplication>
#include <QStringList>

namespace {

const int leastStandstill = 5000; // milliseconds; less can be a busy machine

// The library hands out what is in an application's own section. That an application without a
// certificate of its own uses the global one is this launcher's decision.
void inheritCertificate(AppConfig *config)
{
    if (config->getCertPath().isValid())
        return;
    AppConfig global;
    getWebAppSettings()->getGlobalConfig(global);
    config->setCertPath(global.getCertPath());
    config->setCertPrivateKey(global.getCertPrivateKey());
    config->setCertPassPhrase(global.getCertPassPhrase());
}

// 0 when there is none that can be used.
quint16 globalInspectorPort()
{
    unsigned int port = 0;
    getWebAppSettings()->getGlobalRemoteInspectorPort(port);
    if (port <= 65535)
        return quint16(port);
    Console::warning(QString(QLatin1String("RemoteInspectorPort = %1 cannot be used; it takes %2"))
                         .arg(QString::number(port), QLatin1String(ValueKinds::port.name)));
    return 0;
}

void printConfigurationFile()
{
    Console::print(QLatin1String("Configuration file: ") + Console::shown(ConfigurationFile::path())
                   + QLatin1Char('\n'));
}

void printInspector()
{
    Console::print(
        QString(QLatin1String("Remote inspector port: %1\n")).arg(RemoteInspector::port()));
}

// There is one inspector in a process: at the first application's own port, else at the global one.
void openGlobalInspector(const AppConfig &first, const ApplicationView &view)
{
    const quint16 port = globalInspectorPort();
    const QVariant own = first.getRemoteInspectorPort();
    if (ValueKinds::port.accepts(own) && own.toUInt() != 0)
        return;
    const QString problem = RemoteInspector::open(view.page(), port);
    if (!problem.isEmpty())
        Console::warning(QString(QLatin1String("RemoteInspectorPort = %1 has no effect: %2"))
                             .arg(port)
                             .arg(problem));
}

} // namespace

Launcher::Launcher(const Options &options)
    : m_options(options), m_loading(0), m_endsAtStandstill(false), m_pending(false), m_failed(false)
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
    const QString mistake = ConfigurationFile::read();
    if (!mistake.isEmpty()) {
        Console::error(QString(QLatin1String("%1: %2; \"nuv-apps-config check %1\" says more"))
                           .arg(ConfigurationFile::path(), mistake));
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

    printConfigurationFile();
    m_loading = configs.size();
    for (int i = 0; i < configs.size(); ++i)
        open(m_options.tags.at(i), configs.at(i));
    return true;
}

int Launcher::run()
{
    if (m_loading > 0 || !visibleViews().isEmpty())
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

void Launcher::setEndsAtStandstill(bool ends)
{
    m_endsAtStandstill = ends;
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

    watchScripts();
    view->resize(m_options.size);
    const quint16 inspectorBefore = RemoteInspector::port();
    if (m_views.size() == 1)
        openGlobalInspector(config, *view);
    view->apply(config);
    if (RemoteInspector::port() != inspectorBefore)
        printInspector();
    view->setTimeout(m_options.timeout);
    emit opened(view);
    view->start();
}

ApplicationView *Launcher::findView(const QString &tag) const
{
    for (int i = 0; i < m_views.size(); ++i) {
        if (m_views.at(i) && m_views.at(i)->tag() == tag)
            return m_views.at(i);
    }
    return nullptr;
}

// The limit where somebody is there is not that of a page: it may load for longer than the program may
// stand still.
void Launcher::watchScripts()
{
    const int limit =
        m_endsAtStandstill ? qMax(leastStandstill, m_options.timeout) : leastStandstill;
    if (!m_watch)
        m_watch.reset(new StandstillWatch(
            limit, m_endsAtStandstill ? StandstillWatch::EndProgram : StandstillWatch::Report,
            Failed));
    QStringList tags;
    for (int i = 0; i < m_views.size(); ++i) {
        if (m_views.at(i))
            tags.append(m_views.at(i)->tag());
    }
    m_watch->setSuspects(tags.join(QLatin1String(", ")));
}

// A page asks for an application, of which there is one window. One that was closed, and kept, is there
// at once; one that another window covers comes to the front. A page that asks for its own has it.
void Launcher::openForPage(const QString &tag)
{
    ApplicationView *view = findView(tag);
    AppConfig config;
    if (view && view != sender()) {
        Console::note(tag, QLatin1String("is shown again"));
        view->bringToFront();
    } else if (!view && findApplication(tag, &config)) {
        ++m_loading;
        open(tag, config);
    }
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
