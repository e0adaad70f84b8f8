#include "application/sceneview.h"

#include <QGraphicsScene>
#include <QGraphicsSceneWheelEvent>
#include <QGraphicsWebView>
#include <QWebPage>

namespace {

/// Leaves to its view the turns of the wheel that the page has no use for. The toolkit's keeps them all.
class PageItem : public QGraphicsWebView
{
protected:
    void wheelEvent(QGraphicsSceneWheelEvent *event) override { page()->event(event); }
};

} // namespace

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
