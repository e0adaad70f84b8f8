// SPDX-License-Identifier: MIT
#ifndef WEBAPPSETTINGS_P_H
#define WEBAPPSETTINGS_P_H

// Not part of the public interface, never installed.

#include "config/appconfig.h"

#include <QHash>
#include <QString>

class QSettings;

/// What was read from the configuration file. Filled by its constructor, not changed afterwards.
class WebAppSettingsPrivate
{
public:
    /// Finds the file and reads it.
    WebAppSettingsPrivate();

    /// True when there is a file, it could be read, and its version is 1.something.
    bool isUsable() const;

    QHash<QString, AppConfig> applications; ///< by tag
    QSettings *settings; ///< null without a file; lives as long as the process, for its status
    float version; ///< 0 when not configured
    quint32 remoteInspectorPort; ///< NoPort when not configured
    AppConfig globalConfig; ///< the certificate only

    static const quint32 NoPort = 0xffffffffu;

private:
    Q_DISABLE_COPY(WebAppSettingsPrivate)

    void load(const QString &path);
    void loadGlobal();
    void loadApplications();
};

#endif // WEBAPPSETTINGS_P_H
