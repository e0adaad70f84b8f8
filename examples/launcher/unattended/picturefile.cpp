// SPDX-License-Identifier: MIT
#include "unattended/picturefile.h"

#include <QBuffer>
#include <QFile>
#include <QImage>

#include <cerrno>
#include <cstdio>

// The toolkit's own writing does not look at what the system answers.
QString writePicture(const QImage &picture, const QString &name)
{
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    if (!picture.save(&bytes, "PNG"))
        return QLatin1String("it is too large");
    std::FILE *file = std::fopen(QFile::encodeName(name).constData(), "wb");
    if (!file)
        return qt_error_string(errno);
    const size_t size = size_t(bytes.data().size());
    const bool isWritten = std::fwrite(bytes.data().constData(), 1, size, file) == size;
    const int whyNotWritten = errno;
    const bool isClosed = std::fclose(file) == 0; // a full disk may show here only
    if (isWritten && isClosed)
        return QString();
    return qt_error_string(isWritten ? errno : whyNotWritten);
}
