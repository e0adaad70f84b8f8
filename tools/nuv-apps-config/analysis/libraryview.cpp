// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/analysis/libraryview.h"

#include "json/jsonparser.h"
#include "settings/jsonsettingsformat.h"

#include <QFile>
#include <QSettings>

#include <new>

#include <sys/mman.h>
#include <sys/stat.h>

/// A file in memory, gone with the object or with the process.
class LibraryView::MemoryFile
{
public:
    explicit MemoryFile(const QByteArray &bytes)
    {
        m_file.open(::memfd_create("configuration", MFD_CLOEXEC),
                    QIODevice::WriteOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle);
        m_isWritten = m_file.write(bytes) == bytes.size(); // not without a descriptor
        makeUnlikeAllOthers();
    }

    bool isWritten() const { return m_isWritten; }
    QByteArray path() const { return "/proc/self/fd/" + QByteArray::number(m_file.handle()); }

private:
    Q_DISABLE_COPY(MemoryFile)

    // QSettings keeps what it read by the name, the size and the time of the file.
    void makeUnlikeAllOthers()
    {
        static long second = 0;
        const timespec time = { ++second, 0 };
        const timespec times[2] = { time, time };
        ::futimens(m_file.handle(), times);
    }

    QFile m_file;
    bool m_isWritten;
};

namespace {

const char Variable[] = "NUV_APPS_CONFIG_FILE";

/// An environment variable that has its old value again at the end of the block.
class VariableSetter
{
public:
    explicit VariableSetter(const QByteArray &value)
        : m_before(qgetenv(Variable)), m_wasSet(qEnvironmentVariableIsSet(Variable))
    {
        if (!qputenv(Variable, value))
            throw std::bad_alloc();
    }
    ~VariableSetter()
    {
        if (m_wasSet)
            qputenv(Variable, m_before);
        else
            qunsetenv(Variable);
    }

private:
    Q_DISABLE_COPY(VariableSetter)

    QByteArray m_before;
    bool m_wasSet;
};

// The settings format does not tell a file that it cannot parse from one without keys.
int findError(const QByteArray &bytes)
{
    JsonLexer lexer(bytes);
    JsonParser parser;
    return bytes.isEmpty() || parser.parse(&lexer) ? -1 : parser.errorPos();
}

// Whether the loader asks how many elements that key counts.
bool isCount(const QString &key)
{
    const QStringList parts = key.split(QLatin1Char('/'));
    const bool isOfDomains =
        parts.size() == 4 && parts.at(2) == QLatin1String("GrantBroadcastAccessRightDomains");
    return parts.first() == QLatin1String("Applications") && parts.last() == QLatin1String("size")
        && (parts.size() == 2 || isOfDomains);
}

// The loader asks for as many elements as a "size" says, whether they are there or not. Those that are
// there take two bytes each.
bool keepsLoaderBusy(const QSettings &settings, int bytes)
{
    const qint64 fewElements = 100000;
    qint64 elements = 0;
    for (const QString &key : settings.allKeys()) {
        if (isCount(key))
            elements += qMax(0, settings.value(key).toInt());
    }
    return elements > qMax(fewElements, qint64(bytes));
}

} // namespace

LibraryView::LibraryView() {}

std::unique_ptr<LibraryView> LibraryView::load(const QByteArray &bytes, QString *error)
{
    std::unique_ptr<LibraryView> view(new LibraryView);
    view->m_copy.reset(new MemoryFile(bytes));
    if (!view->m_copy->isWritten()) {
        *error = noMemory();
        return nullptr;
    }
    const QByteArray path = view->m_copy->path();
    view->m_errorOffset = findError(bytes);
    // The file is read here. The loader's own settings share what these have read.
    view->m_settings.reset(new QSettings(QString::fromLatin1(path), JsonSettingsFormat));
    if (view->m_settings->status() == QSettings::AccessError) { // too many files are open
        *error = noMemory();
        return nullptr;
    }
    if (keepsLoaderBusy(*view->m_settings, bytes.size())) {
        *error = QLatin1String("a key \"size\" would keep the loader busy for minutes; see check");
        return nullptr;
    }
    const VariableSetter setter(path);
    view->m_state.reset(new WebAppSettingsPrivate);
    return view;
}

QString LibraryView::noMemory()
{
    return QLatin1String("there is not enough memory for this file");
}

LibraryView::~LibraryView()
{
    if (m_state)
        delete m_state->settings; // a launcher never does; this program may open many files
}

int LibraryView::elementCount() const
{
    return settings().value(QLatin1String("Applications/size")).toInt();
}
