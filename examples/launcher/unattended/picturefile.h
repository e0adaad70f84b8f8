// SPDX-License-Identifier: MIT
#ifndef PICTUREFILE_H
#define PICTUREFILE_H

class QImage;
class QString;

/// Writes a picture as PNG. Returns an empty text once the system has taken all of it, or else why it
/// did not.
QString writePicture(const QImage &picture, const QString &name);

#endif // PICTUREFILE_H
