// SPDX-License-Identifier: MIT
#include "application/websurface.h"

#include "application/sceneview.h"

#include <QGraphicsWebView>
#include <QWebView>

namespace {

class WidgetSurface : public WebSurface
{
public:
    WidgetSurface(QWebPage *page, QWidget *parent) : m_view(new QWebView(parent))
    {
        m_view->setPage(page);
        m_view->setContextMenuPolicy(Qt::NoContextMenu);
        m_view->setAcceptDrops(false);
    }

    QWidget *widget() const override { return m_view; }
    QWidget *canvas() const override { return m_view; }
    QGraphicsWebView *item() const override { return nullptr; }
    void growToContents() override {}

    void offerControls() override
    {
        m_view->setContextMenuPolicy(Qt::DefaultContextMenu);
        m_view->setAcceptDrops(true);
    }

private:
    QWebView *m_view;
};

class SceneSurface : public WebSurface
{
public:
    SceneSurface(QWebPage *page, QWidget *parent) : m_view(new SceneView(page, parent)) {}

    QWidget *widget() const override { return m_view; }
    QWidget *canvas() const override { return m_view->viewport(); }
    QGraphicsWebView *item() const override { return m_view->item(); }
    void growToContents() override { m_view->growToContents(); }
    void offerControls() override { m_view->offerControls(); }

private:
    SceneView *m_view;
};

} // namespace

WebSurface *WebSurface::createWidget(QWebPage *page, QWidget *parent)
{
    return new WidgetSurface(page, parent);
}

WebSurface *WebSurface::createScene(QWebPage *page, QWidget *parent)
{
    return new SceneSurface(page, parent);
}
