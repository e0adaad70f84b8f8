// SPDX-License-Identifier: MIT
#include "tests/faults/opening.h"

#include <QSettings>

void (*Opening::before)(const QString &path) = nullptr;
void (*Opening::behind)() = nullptr;

extern "C" void __real__ZN9QSettingsC1ERK7QStringNS_6FormatEP7QObject(QSettings *, const QString &,
                                                                      QSettings::Format, QObject *);
extern "C" void __wrap__ZN9QSettingsC1ERK7QStringNS_6FormatEP7QObject(QSettings *settings,
                                                                      const QString &path,
                                                                      QSettings::Format format,
                                                                      QObject *parent)
{
    if (Opening::before)
        Opening::before(path);
    __real__ZN9QSettingsC1ERK7QStringNS_6FormatEP7QObject(settings, path, format, parent);
    if (Opening::behind)
        Opening::behind();
}
