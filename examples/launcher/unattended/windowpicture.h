// SPDX-License-Identifier: MIT
#ifndef WINDOWPICTURE_H
#define WINDOWPICTURE_H

#include <QImage>

class QWidget;

/// What a window looks like now, with transparent pixels where nothing covers the background.
QImage pictureOf(QWidget &window);

#endif // WINDOWPICTURE_H
