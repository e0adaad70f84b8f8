// SPDX-License-Identifier: MIT
#ifndef WEBSURFACE_H
#define WEBSURFACE_H

class QGraphicsWebView;
class QWebPage;
class QWidget;

/// Shows a page: as a widget, or as an item of a graphics scene. The widget belongs to its parent; it
/// must not be used once that is deleted.
class WebSurface
{
public:
    static WebSurface *createWidget(QWebPage *page, QWidget *parent);
    static WebSurface *createScene(QWebPage *page, QWidget *parent);

    virtual ~WebSurface() {}

    /// For the layout of a window, and for the focus.
    virtual QWidget *widget() const = 0;

    /// The widget that is painted on whenever the page changes.
    virtual QWidget *canvas() const = 0;

    /// The item of the scene; null when there is none.
    virtual QGraphicsWebView *item() const = 0;

    /// Lets an item grow to the size of the page; a widget stays as it is.
    virtual void growToContents() = 0;

    /// Lets the user open the engine's context menu, and drop files and addresses on the page. The
    /// scripts of the page are told of a wish for a menu in any case.
    virtual void offerControls() = 0;
};

#endif // WEBSURFACE_H
