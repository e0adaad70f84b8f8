// SPDX-License-Identifier: MIT
#include "effects/framerate.h"

#include <QEvent>
#include <QTimer>

FrameRate::FrameRate(QWidget *painted, QWidget *parent)
    : QLabel(parent), m_painted(painted), m_frames(0)
{
    // Opaque, so that a new rate does not have the page painted once more.
    setAutoFillBackground(true);
    setStyleSheet(QLatin1String("background: #16202f; color: #f4b740; padding: 3px 8px"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    painted->installEventFilter(this);
    QTimer *second = new QTimer(this);
    connect(second, SIGNAL(timeout()), SLOT(showRate()));
    second->start(1000);
    showRate();
}

bool FrameRate::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Paint)
        ++m_frames;
    return QLabel::eventFilter(watched, event);
}

void FrameRate::showRate()
{
    setText(QString(QLatin1String("%1 frames/s")).arg(m_frames));
    m_frames = 0;
    adjustSize();
    move(m_painted->mapTo(parentWidget(), QPoint(0, 0)));
    raise();
}
