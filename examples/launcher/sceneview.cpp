#include "examples/launcher/sceneview.h"

#include <QGraphicsScene>
#include <QGraphicsWebView>
#include <QWebPage>

SceneView::SceneView(QWebPage *page, QWidget *parent)
    : QGraphicsView(parent), m_item(new QGraphicsWebView)
{
    setFrameShape(QFrame::NoFrame);
    setScene(new QGraphicsScene(this));
    scene()->addItem(m_item);
    m_item->setPage(page);
    page->setView(this); // so that the page tells who shows it
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_item->setFocus();
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
