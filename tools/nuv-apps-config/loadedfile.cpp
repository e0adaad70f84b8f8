#include "tools/nuv-apps-config/loadedfile.h"

#include "tools/nuv-apps-config/configurationfile.h"

#include <QSet>

namespace {

const char Variable[] = "NUV_APPS_CONFIG_FILE";

bool canBeNamed(const QString &path)
{
    return QString::fromLatin1(path.toLatin1()) == path;
}

} // namespace

std::unique_ptr<LoadedFile> LoadedFile::open(const QString &name, QString *error)
{
    std::unique_ptr<LoadedFile> file(new LoadedFile);
    file->m_path = name;
    file->m_why = QLatin1String("named on the command line");
    if (name.isEmpty()) {
        const ConfigurationFile::Choice choice = ConfigurationFile::choice();
        file->m_path = choice.path;
        file->m_why = choice.why;
        if (choice.path.isEmpty()) {
            *error = QLatin1String("there is no configuration file: ") + choice.why;
            return nullptr;
        }
    }
    QByteArray bytes;
    if (!ConfigurationFile::read(file->m_path, &bytes, error)) {
        *error = file->m_path + QLatin1String(": ") + *error;
        return nullptr;
    }
    file->m_analysis = analyse(file->m_path, bytes, ConfigurationFile::folderOf(file->m_path));
    return file->load(error) ? std::move(file) : nullptr;
}

LoadedFile::~LoadedFile()
{
    if (m_state)
        delete m_state->settings; // a launcher never does; this program may open two files
}

// The loader takes its file from the environment and nowhere else, with a name in Latin-1.
bool LoadedFile::load(QString *error)
{
    const QString danger = m_analysis->danger();
    if (!danger.isEmpty()) {
        *error = m_path + QLatin1String(": ") + danger;
        return false;
    }
    const bool isInput = m_path == ConfigurationFile::standardInput();
    if (isInput || !canBeNamed(m_path)) {
        if (!m_copy.open() || m_copy.write(m_analysis->source.bytes()) != m_analysis->source.size()
            || !m_copy.flush()) {
            *error = QLatin1String("no temporary file can be written: ") + m_copy.errorString();
            return false;
        }
    }
    const QByteArray before = qgetenv(Variable);
    const bool wasSet = qEnvironmentVariableIsSet(Variable);
    qputenv(Variable, (m_copy.isOpen() ? m_copy.fileName() : m_path).toLatin1());
    m_state.reset(new WebAppSettingsPrivate);
    if (wasSet)
        qputenv(Variable, before);
    else
        qunsetenv(Variable);
    return true;
}

QStringList LoadedFile::tags() const
{
    QStringList tags;
    QSet<QString> known;
    const Document &document = m_analysis->document;
    if (!document.isEmpty() && document.rootNode().type == Node::Object) {
        const Node::Child *list =
            document.member(document.rootNode(), QLatin1String("Applications"));
        for (const Node::Child &child :
             list ? document.at(*list).children : std::vector<Node::Child>()) {
            const Node::Child *tag = document.member(document.at(child), QLatin1String("Tag"));
            const QString text = tag ? document.at(*tag).value.toString() : QString();
            if (tag && m_state->applications.contains(text) && !known.contains(text))
                tags.append(text);
            known.insert(text);
        }
    }
    QStringList rest;
    for (const QString &tag : m_state->applications.keys()) {
        if (!known.contains(tag))
            rest.append(tag); // of applications that the flat keys put together
    }
    rest.sort();
    return tags + rest;
}

const Node *LoadedFile::application(const QString &tag) const
{
    const Document &document = m_analysis->document;
    if (document.isEmpty())
        return nullptr;
    const Node::Child *list = document.member(document.rootNode(), QLatin1String("Applications"));
    if (!list)
        return nullptr;
    for (const Node::Child &child : document.at(*list).children) {
        const Node &element = document.at(child);
        const Node::Child *member = document.member(element, QLatin1String("Tag"));
        if (member && document.at(*member).value.isValid()
            && document.at(*member).value.toString() == tag)
            return &element;
    }
    return nullptr;
}

const Node *LoadedFile::global() const
{
    const Document &document = m_analysis->document;
    const Node::Child *member = document.isEmpty()
        ? nullptr
        : document.member(document.rootNode(), QLatin1String("Global"));
    return member ? &document.at(*member) : nullptr;
}

const Node *LoadedFile::valueAt(const Node &object, const QString &path) const
{
    const Node *node = &object;
    for (const QString &key : path.split(QLatin1Char('/'))) {
        const Node::Child *member = m_analysis->document.member(*node, key);
        if (!member)
            return nullptr;
        node = &m_analysis->document.at(*member);
    }
    return node;
}

QString LoadedFile::placeText(const Node *node) const
{
    if (!node)
        return QString();
    const Place place = m_analysis->source.place(node->begin);
    return QString(QLatin1String("%1:%2")).arg(place.line).arg(place.column);
}
