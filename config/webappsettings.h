// SPDX-License-Identifier: MIT
#ifndef WEBAPPSETTINGS_H
#define WEBAPPSETTINGS_H

/// \file
/// What the configuration file says about web applications.

#include "nuvlaunchersupport_export.h"

class AppConfig;
class QString;
class WebAppSettingsPrivate;

/// The web application configuration: what the configuration file says, read once.
///
/// The file is the one that the environment variable NUV_APPS_CONFIG_FILE names, or, when that is not
/// set or names nothing, AppsConfig.json in the working directory. Mistakes in it are ignored
/// without a message: what cannot be used counts as not configured. (A syntax error sends one warning to
/// the toolkit's message handler.)
///
/// The lookups write their output parameter when they return true and leave it untouched when they
/// return false. They only read, and may run on any thread once the object is constructed.
///
/// Use the one instance of getWebAppSettings(). Every further object reads the file again, and what
/// it read is never freed.
class NUVLAUNCHERSUPPORT_EXPORT WebAppSettings
{
public:
    /// Reads the configuration file. A missing, unreadable or malformed one is no error: nothing is
    /// configured then.
    WebAppSettings();

    /// Frees nothing: what was handed out by then stays usable until the process ends.
    virtual ~WebAppSettings();

    /// The port of the remote inspector, "RemoteInspectorPort" of the file's "Global", as it is in the
    /// file: 0 and values above 65535 are handed out, too. Returns false when no port is configured,
    /// or no file of version 1 could be read.
    bool getGlobalRemoteInspectorPort(unsigned int &port) const;

    /// The global section's own settings: CertPath, CertPrivateKey and CertPassPhrase, as far as they
    /// are configured, in a file of any version. Always returns true.
    bool getGlobalConfig(AppConfig &config) const;

    /// The settings of the application whose "Tag" is `tag`, compared exactly, with its case. They
    /// share the stored values; nothing is inherited from the global section. Returns false when no
    /// application has that tag, or no file of version 1 could be read.
    bool getAppConfig(QString const &tag, AppConfig &config) const;

private:
    WebAppSettingsPrivate *d;
};

/// The instance of this process, never null. It is made, and the file read, by the first call; when
/// two threads make that call at once, one waits for the other. An exception of that first reading
/// (only exhausted memory throws one) leaves no trace, and the next call tries again.
NUVLAUNCHERSUPPORT_EXPORT WebAppSettings *getWebAppSettings();

#endif // WEBAPPSETTINGS_H
