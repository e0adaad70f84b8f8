// SPDX-License-Identifier: MIT
#ifndef CHROME_H
#define CHROME_H

#include <QToolBar>

class QLineEdit;
class QUrl;
class QWebPage;

/// The controls of a browser: back, forward, reload, stop, and a line with the address.
class Chrome : public QToolBar
{
    Q_OBJECT

public:
    Chrome(QWebPage *page, QWidget *parent);

private Q_SLOTS:
    void showAddress(const QUrl &address);
    void openAddress();

private:
    QWebPage *m_page;
    QLineEdit *m_address;
};

#endif // CHROME_H
