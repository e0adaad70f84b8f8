// SPDX-License-Identifier: MIT
#include "effects/pagesettings.h"

#include "application/applicationpage.h"
#include "application/applicationview.h"
#include "application/replyreport.h"
#include "program/configurationfile.h"
#include "application/websurface.h"
#include "values/pageaddress.h"
#include "values/scriptfile.h"
#include "values/useragent.h"

#include <QFile>
#include <QPalette>
#include <QUrl>
#include <QVariant>
#include <QWebFrame>
#include <QWebSettings>

namespace {

// Each scrolling is taken back before the next picture, however it came about. The page cannot remove
// a listener that it has no name for, and cannot come before the first one.
const char takeScrollingBack[] =
    "(function(back) {"
    "addEventListener('scroll', function() { if (pageXOffset || pageYOffset) back(0, 0) }, true)"
    "})(scrollTo)";

// The toolkit can forbid the bars of a page, and with them the wheel and the keys. Bars of no size leave
// both. Parts of the page keep theirs, which tell that there is more.
const char withoutScrollBars[] = "html::-webkit-scrollbar, body::-webkit-scrollbar"
                                 " { width: 0 !important; height: 0 !important }";

} // namespace

bool PageSettings::setUrl(ApplicationView &view, const QVariant &address)
{
    const Parsed<QUrl> page =
        toPageAddress(address.toString(), ConfigurationFile::resolve(QLatin1String(".")));
    if (!page.isUsable())
        return false;
    view.setAddress(page.value);
    return true;
}

bool PageSettings::setUserAgent(ApplicationView &view, const QVariant &name)
{
    const Parsed<QString> userAgent = parseUserAgent(name.toString());
    if (!userAgent.isUsable())
        return false;
    view.page()->setUserAgent(userAgent.value);
    return true;
}

bool PageSettings::setUserScript(ApplicationView &view, const QVariant &file)
{
    const Parsed<QString> path =
        findScript(file.toString(), ConfigurationFile::resolve(QLatin1String(".")));
    QFile script(path.value);
    if (!path.isUsable() || !script.open(QIODevice::ReadOnly))
        return false;
    view.page()->setUserScript(script.fileName(), QString::fromUtf8(script.readAll().constData()));
    return true;
}

bool PageSettings::setScale(ApplicationView &view, const QVariant &factor)
{
    view.page()->mainFrame()->setZoomFactor(
        qreal(factor.toDouble())); // a float in the Qt 4 of ARM devices
    return true;
}

bool PageSettings::setTransparentBackground(ApplicationView &view, const QVariant &on)
{
    if (!on.toBool())
        return true;
    QPalette palette = view.page()->palette();
    palette.setBrush(QPalette::Base, Qt::transparent);
    view.page()->setPalette(palette);
    view.setAttribute(Qt::WA_TranslucentBackground);
    QWidget *canvas = view.surface().canvas();
    canvas->setPalette(palette);
    canvas->setAttribute(Qt::WA_OpaquePaintEvent, false);
    return true;
}

bool PageSettings::setScrollbar(ApplicationView &view, const QVariant &on)
{
    const QByteArray sheet = on.toBool() ? QByteArray() : QByteArray(withoutScrollBars);
    view.page()->settings()->setUserStyleSheetUrl(
        QUrl::fromEncoded("data:text/css;charset=utf-8;base64," + sheet.toBase64()));
    return true;
}

bool PageSettings::setConsoleSuppressed(ApplicationView &view, const QVariant &on)
{
    view.page()->setConsoleIsShown(!on.toBool());
    return true;
}

bool PageSettings::setLoadedUrlsPrinted(ApplicationView &view, const QVariant &on)
{
    view.replyReport().setAddressesArePrinted(on.toBool());
    return true;
}

bool PageSettings::setScrollingProhibited(ApplicationView &view, const QVariant &on)
{
    view.page()->setDocumentScript("scrolling",
                                   QLatin1String(on.toBool() ? takeScrollingBack : ""));
    return true;
}

bool PageSettings::setErrorPage(ApplicationView &view, const QVariant &on)
{
    view.page()->setErrorPageIsShown(on.toBool());
    return true;
}
