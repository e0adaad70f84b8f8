// SPDX-License-Identifier: MIT
#include "unattended/windowpicture.h"

#include <QWidget>

QImage pictureOf(QWidget &window)
{
    QImage image(window.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    window.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}
