#include "program/launcher.h"

#include <WebAppSettings>
#include "application/applicationpage.h"
#include "application/applicationview.h"
#include "program/configurationfile.h"
#include "program/console.h"
#include "unattended/pagescript.h"
#include "effects/remoteinspector.h"
#include "values/valuekind.h"

#include <QApplication>
#include <QFileInfo>
#include <QImage>
#include <QTimer>
#include <QUrl>
#include <QWebFrame>

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
        Console::error(QString(QLatin1String("RemoteInspectorPort = %1 has no effect: %2"))
                           .arg(globalInspectorPort())
                           .arg(problem));
}

} // namespace

Launcher::Launcher(const Options &options)
    : m_options(options), m_loading(0), m_pictures(0), m_finished(false), m_failed(false)
{
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
    const bool picturesMissing = !m_options.screenshot.isEmpty() && m_pictures < m_views.size();
    return m_failed || picturesMissing ? Failed : Succeeded;
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
    ApplicationView *view = new ApplicationView(tag);
    m_views.append(view);
    connect(view, SIGNAL(loaded()), SLOT(pageSettled()));
    connect(view, SIGNAL(failed(QString)), SLOT(pageFailed(QString)));
    connect(view, SIGNAL(openRequested(QString)), SLOT(openForPage(QString)));

    view->resize(m_options.size);
    if (m_views.size() == 1)
        openGlobalInspector(config, *view);
    view->apply(config);
    if (!m_options.screenshot.isEmpty())
        view->keepSize(m_options.size);
    if (m_options.endsByItself())
        view->expectNobody(m_options.timeout);
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
    m_failed = true;
    if (!view->showsErrorPage()) {
        view->setAttribute(Qt::WA_DeleteOnClose); // there is nothing to be kept
        view->close();
    }
    pageSettled();
}

void Launcher::pageSettled()
{
    --m_loading;
    if (m_loading == 0 && !m_finished)
        QTimer::singleShot(m_options.wait, this, SLOT(finish()));
}

void Launcher::finish()
{
    if (m_loading > 0 || m_finished)
        return; // a page opened another one by now
    m_finished = true;
    for (int i = 0; i < m_views.size(); ++i) {
        ApplicationView *view = m_views.at(i);
        if (!view || !view->isVisible())
            continue;
        if (!m_options.script.isEmpty())
            ask(*view);
        if (!m_options.screenshot.isEmpty())
            takePicture(*view);
    }
    if (m_options.endsByItself())
        QApplication::quit();
}

void Launcher::ask(const ApplicationView &view)
{
    const PageAnswer answer = askPage(view.page()->mainFrame(), m_options.script);
    if (answer.ok) {
        Console::note(view.tag(), QLatin1String("answers: ") + answer.text);
        return;
    }
    Console::error(view.tag() + QLatin1String(": the script failed: ") + answer.text);
    m_failed = true;
}

void Launcher::takePicture(ApplicationView &view)
{
    const QString file = pictureFile(view.tag());
    if (!view.picture().save(file, "PNG")) {
        Console::error(view.tag() + QLatin1String(": the picture cannot be written to ") + file);
        m_failed = true;
        return;
    }
    Console::note(view.tag(), QLatin1String("picture in ") + file);
    ++m_pictures;
}

// A tag is any text, so what a file's name cannot hold is escaped in it.
QString Launcher::pictureFile(const QString &tag) const
{
    const QString file = m_options.screenshot;
    if (m_views.size() == 1)
        return file;
    const QString suffix = QFileInfo(file).suffix();
    const int end = suffix.isEmpty() ? file.size() : file.size() - suffix.size() - 1;
    return file.left(end) + QLatin1Char('-')
        + QString::fromLatin1(QUrl::toPercentEncoding(tag).constData()) + file.mid(end);
}
