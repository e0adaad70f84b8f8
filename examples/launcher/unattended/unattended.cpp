// SPDX-License-Identifier: MIT
#include "unattended/unattended.h"

#include "application/applicationview.h"
#include "program/console.h"
#include "program/launcher.h"
#include "unattended/pagescript.h"
#include "unattended/picturefile.h"
#include "unattended/windowpicture.h"

#include <QApplication>
#include <QFileInfo>
#include <QTimer>
#include <QUrl>

namespace {

// Even if it is configured to be as large as the screen.
void keepSize(ApplicationView *view, const QSize &size)
{
    view->setWindowState(Qt::WindowNoState);
    view->resize(size);
}

} // namespace

Unattended::Unattended(Launcher *launcher, const Options &options)
    : QObject(launcher), m_launcher(launcher), m_options(options), m_finished(false)
{
    launcher->setEndsAtStandstill(endsByItself(options));
    launcher->setPending(!value("screenshot").isEmpty());
    connect(launcher, SIGNAL(opened(ApplicationView *)), SLOT(prepare(ApplicationView *)));
    connect(launcher, SIGNAL(settled()), SLOT(waitOnce()));
}

bool Unattended::endsByItself(const Options &options)
{
    return options.ofLayer.contains("once") || options.ofLayer.contains("screenshot");
}

QString Unattended::value(const char *option) const
{
    return m_options.ofLayer.value(option);
}

void Unattended::prepare(ApplicationView *view)
{
    if (!value("screenshot").isEmpty())
        keepSize(view, m_options.size);
    if (endsByItself(m_options))
        view->expectNobody();
}

void Unattended::waitOnce()
{
    QTimer::singleShot(value("wait").toInt(), this, SLOT(finish()));
}

void Unattended::finish()
{
    if (m_launcher->isLoading() || m_finished)
        return; // a page opened another one by now, or did so afterwards
    m_finished = true;
    const QList<ApplicationView *> views = m_launcher->visibleViews();
    for (int i = 0; i < views.size(); ++i) {
        if (!value("eval").isEmpty())
            ask(views.at(i));
        if (!value("screenshot").isEmpty())
            takePicture(views.at(i));
    }
    m_launcher->setPending(false);
    if (endsByItself(m_options))
        QApplication::quit();
}

void Unattended::ask(ApplicationView *view)
{
    const PageAnswer answer = askPage(view->page()->mainFrame(), value("eval"));
    if (answer.ok) {
        Console::note(view->tag(), QLatin1String("answers: ") + answer.text);
        return;
    }
    Console::error(view->tag() + QLatin1String(": the script failed: ") + answer.text);
    m_launcher->setFailed();
}

void Unattended::takePicture(ApplicationView *view)
{
    const QString file = pictureFile(view->tag());
    const QString problem = writePicture(pictureOf(*view), file);
    if (!problem.isEmpty()) {
        Console::error(view->tag() + QLatin1String(": the picture cannot be written to ") + file
                       + QLatin1String(": ") + problem);
        m_launcher->setFailed();
        return;
    }
    Console::note(view->tag(), QLatin1String("picture in ") + file);
}

// A tag is any text, so what a file's name cannot hold is escaped in it.
QString Unattended::pictureFile(const QString &tag) const
{
    const QString file = value("screenshot");
    if (m_launcher->viewCount() == 1)
        return file;
    const QString suffix = QFileInfo(file).suffix();
    const int end = suffix.isEmpty() ? file.size() : file.size() - suffix.size() - 1;
    return file.left(end) + QLatin1Char('-')
        + QString::fromLatin1(QUrl::toPercentEncoding(tag).constData()) + file.mid(end);
}
