#ifndef LOADEDFILE_H
#define LOADEDFILE_H

#include "config/webappsettings_p.h"
#include "tools/nuv-apps-config/analysis.h"

#include <QSettings>
#include <QTemporaryFile>

#include <memory>

/// A configuration file as the library's own loader sees it, beside what is known of its text.
class LoadedFile
{
public:
    /// `name` is empty for the file that the library would pick. Null, with the reason in `*error`,
    /// when there is no such file, it cannot be read, or loading it would do harm.
    static std::unique_ptr<LoadedFile> open(const QString &name, QString *error);
    ~LoadedFile();

    QString name() const { return m_analysis->source.name(); }
    QString why() const { return m_why; }
    const Analysis &analysis() const { return *m_analysis; }
    const WebAppSettingsPrivate &state() const { return *m_state; }

    /// Whether the library could parse it at all.
    bool isParsed() const
    {
        const Findings &findings = m_analysis->findings;
        return !findings.hasSyntaxError() && !findings.has("not-text");
    }

    /// The tags in the order of the file.
    QStringList tags() const;

    /// The object of the application with that tag: the first one. Null when there is none.
    const Node *application(const QString &tag) const;

    /// The value at "Certificate/Path" inside an object of the file; null when there is none.
    const Node *valueAt(const Node &object, const QString &path) const;
    const Node *global() const;

    QString placeText(const Node *node) const;

private:
    LoadedFile() {}
    bool load(QString *error);

    QString m_why;
    QString m_path;
    QTemporaryFile m_copy;
    std::unique_ptr<Analysis> m_analysis;
    std::unique_ptr<WebAppSettingsPrivate> m_state;
};

#endif // LOADEDFILE_H
