#include "examples/launcher/launcher.h"

#include "config/webappsettings.h"
#include "examples/launcher/applicationview.h"
#include "examples/launcher/configurationfile.h"
#include "examples/launcher/console.h"

#include <QApplication>
#include <QFileInfo>
#include <QImage>
#include <QTimer>
#include <QUrl>

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

void printGlobals()
{
    Console::print(QLatin1String("Configuration file: ") + Console::shown(ConfigurationFile::path())
                   + QLatin1Char('\n'));
    unsigned int port = 0;
    if (getWebAppSettings()->getGlobalRemoteInspectorPort(port))
        Console::print(
            QString(QLatin1String("Remote inspector port: %1 (without effect here)\n")).arg(port));
}

} // namespace

Launcher::Launcher(const Options &options)
    : m_options(options), m_loading(0), m_pictures(0), m_failed(false)
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
    view->apply(config);
    if (!m_options.screenshot.isEmpty())
        view->keepSize(m_options.size);
    view->start();
}

// A page asks for the application beside its own.
void Launcher::openForPage(const QString &tag)
{
    AppConfig config;
    if (!findApplication(tag, &config))
        return;
    ++m_loading;
    open(tag, config);
}

void Launcher::pageFailed(const QString &what)
{
    ApplicationView *view = qobject_cast<ApplicationView *>(sender());
    Console::error(view->tag() + QLatin1String(": ") + what);
    m_failed = true;
    view->close();
    pageSettled();
}

void Launcher::pageSettled()
{
    --m_loading;
    if (m_loading == 0 && !m_options.screenshot.isEmpty())
        QTimer::singleShot(m_options.wait, this, SLOT(takePictures()));
}

void Launcher::takePictures()
{
    if (m_loading > 0)
        return; // a page opened another one by now
    for (int i = 0; i < m_views.size(); ++i) {
        if (m_views.at(i) && m_views.at(i)->isVisible())
            takePicture(*m_views.at(i));
    }
    QApplication::quit();
}

void Launcher::takePicture(const ApplicationView &view)
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
