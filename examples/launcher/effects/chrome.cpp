// SPDX-License-Identifier: MIT
#include "effects/chrome.h"

#include <QAction>
#include <QLineEdit>
#include <QUrl>
#include <QWebFrame>
#include <QWebPage>

Chrome::Chrome(QWebPage *page, QWidget *parent)
    : QToolBar(parent), m_page(page), m_address(new QLineEdit(this))
{
    setAutoFillBackground(true); // the window itself may be transparent
    const QWebPage::WebAction actions[] = { QWebPage::Back, QWebPage::Forward, QWebPage::Reload,
                                            QWebPage::Stop };
    for (QWebPage::WebAction action : actions)
        addAction(page->action(action));
    addWidget(m_address);
    connect(m_address, SIGNAL(returnPressed()), SLOT(openAddress()));
    connect(page->mainFrame(), SIGNAL(urlChanged(QUrl)), SLOT(showAddress(QUrl)));
}

// Without the password that it may hold: others can see the screen.
void Chrome::showAddress(const QUrl &address)
{
    QUrl shown = address;
    shown.setPassword(QString());
    m_address->setText(shown.toString());
    m_address->setCursorPosition(0);
}

void Chrome::openAddress()
{
    m_page->mainFrame()->load(QUrl::fromUserInput(m_address->text()));
    m_page->view()->setFocus();
}
