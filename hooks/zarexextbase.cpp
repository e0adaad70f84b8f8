// SPDX-License-Identifier: MIT
#include "hooks/zarexextbase.h"

#include "global/qtcompat.h"

#include <QWebFrame>
#include <QWebPage>

namespace {

ZarexExtFactory const *registeredFactory = nullptr;

} // namespace

ZarexExtBase::ZarexExtBase(QObject *parent, QWebPage *hostPage) : QObject(parent), page(hostPage)
{
    setObjectName(QLatin1String("zarexExt"));
    QWebFrame *const frame = hostFrame();
    if (frame)
        connect(frame, SIGNAL(javaScriptWindowObjectCleared()), this, SLOT(attachObject()));
}

ZarexExtBase::~ZarexExtBase() {}

QWebFrame *ZarexExtBase::hostFrame() const
{
    return page ? page->mainFrame() : nullptr;
}

QWidget *ZarexExtBase::hostView() const
{
    return page ? page->view() : nullptr;
}

// The name is read at every publication, so that a subclass may change it.
void ZarexExtBase::attachObject()
{
    QWebFrame *const frame = hostFrame();
    if (frame)
        frame->addToJavaScriptWindowObject(objectName(), this,
                                           QtCompat::ScriptOwnership::QtOwnership);
}

void registerZarexExtFactory(ZarexExtFactory const *factory)
{
    registeredFactory = factory;
}

ZarexExtFactory const *getZarexExtFactory()
{
    return registeredFactory;
}
