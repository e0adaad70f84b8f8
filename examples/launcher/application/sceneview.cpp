// SPDX-License-Identifier: MIT
#include "application/sceneview.h"

#include <QGraphicsScene>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneWheelEvent>
#include <QGraphicsWebView>
#include <QWebPage>

/// Leaves to its view the turns of the wheel that the page has no use for: the toolkit's keeps them all.
/// Opens the engine's context menu only when told to, where the toolkit's always does. The page's scripts
/// know of the wish for it by then.
class PageItem : public QGraphicsWebView
{
public:
    PageItem() : m_offersMenu(false) {}

    void offerMenu() { m_offersMenu = true; }

protected:
    void wheelEvent(QGraphicsSceneWheelEvent *event) override { page()->event(event); }

    void contextMenuEvent(QGraphicsSceneContextMenuEvent *event) override
    {
        if (m_offersMenu)
            QGraphicsWebView::contextMenuEvent(event);
    }

private:
    bool m_offersMenu;
};

SceneView::SceneView(QWebPage *page, QWidget *parent) : QGraphicsView(parent), m_item(new PageItem)
{
    setFrameShape(QFrame::NoFrame);
    setScene(new QGraphicsScene(this));
    scene()->addItem(m_item);
    m_item->setPage(page);
    page->setView(this); // so that the page tells who shows it
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_item->setFocus();
    m_item->setAcceptDrops(false);
    setAcceptDrops(false);
}

QGraphicsWebView *SceneView::item() const
{
    return m_item;
}

void SceneView::growToContents()
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_item->setResizesToContents(true);
    connect(m_item, SIGNAL(geometryChanged()), SLOT(followItem()));
}

void SceneView::offerControls()
{
    m_item->offerMenu();
    m_item->setAcceptDrops(true);
    setAcceptDrops(true);
}

void SceneView::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    if (m_item->resizesToContents())
        m_item->page()->setPreferredContentsSize(viewport()->size());
    else
        m_item->setGeometry(QRectF(QPointF(0, 0), viewport()->size()));
    followItem();
}

void SceneView::followItem()
{
    setSceneRect(m_item->geometry());
}
