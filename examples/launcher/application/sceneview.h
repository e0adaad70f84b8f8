// SPDX-License-Identifier: MIT
#ifndef SCENEVIEW_H
#define SCENEVIEW_H

#include <QGraphicsView>

class PageItem;
class QGraphicsWebView;
class QWebPage;

/// A graphics view whose scene holds nothing but a page.
class SceneView : public QGraphicsView
{
    Q_OBJECT

public:
    SceneView(QWebPage *page, QWidget *parent);

    QGraphicsWebView *item() const;

    /// Lets the item grow to the size of the page; the view scrolls over it then.
    void growToContents();

    /// Lets the user open the engine's context menu, and drop things on the page.
    void offerControls();

protected:
    void resizeEvent(QResizeEvent *event) override;

private Q_SLOTS:
    void followItem();

private:
    PageItem *m_item;
};

#endif // SCENEVIEW_H
