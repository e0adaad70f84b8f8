#ifndef SCENEVIEW_H
#define SCENEVIEW_H

#include <QGraphicsView>

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

protected:
    void resizeEvent(QResizeEvent *event) override;

private Q_SLOTS:
    void followItem();

private:
    QGraphicsWebView *m_item;
};

#endif // SCENEVIEW_H
