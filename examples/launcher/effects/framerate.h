// SPDX-License-Identifier: MIT
#ifndef FRAMERATE_H
#define FRAMERATE_H

#include <QLabel>

/// Shows, in the corner of a window, how often a widget of it was painted in the last second.
class FrameRate : public QLabel
{
    Q_OBJECT

public:
    FrameRate(QWidget *painted, QWidget *parent);

    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void showRate();

private:
    QWidget *m_painted;
    int m_frames; ///< since the rate was shown last
};

#endif // FRAMERATE_H
