// SPDX-License-Identifier: MIT
#include "benchmarks/readers.h"

#include <QJsonDocument>

Readers::Reading Readers::prepareQt(const QByteArray &document)
{
    return [document]() { return QJsonDocument::fromJson(document).toVariant(); };
}
