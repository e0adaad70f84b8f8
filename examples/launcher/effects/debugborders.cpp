// SPDX-License-Identifier: MIT
#include "effects/debugborders.h"

#include <QList>
#include <QPointer>
#include <QWebPage>
#include <QWebSettings>

namespace {

QList<QPointer<QWebPage>> withBorders; // null where a page was deleted

void tellTheEngine(QWebPage *page, bool shown)
{
    const char variable[] = "WEBKIT_SHOW_COMPOSITING_DEBUG_VISUALS";
    const QByteArray before = qgetenv(variable);
    qputenv(variable, shown ? "1" : "0");
    const QWebSettings::WebAttribute any = QWebSettings::AcceleratedCompositingEnabled;
    page->settings()->setAttribute(any, page->settings()->testAttribute(any));
    qputenv(variable, before);
}

} // namespace

void DebugBorders::show(QWebPage *page, bool shown)
{
    tellTheEngine(page, shown);
    withBorders.removeAll(page);
    if (shown)
        withBorders.append(page);
}

void DebugBorders::restore()
{
    for (int i = 0; i < withBorders.size(); ++i) {
        if (withBorders.at(i))
            tellTheEngine(withBorders.at(i), true);
    }
}
