// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/commands/loadedfile.h"

#include "tools/nuv-apps-config/report/output.h"
#include "tools/nuv-apps-config/commands/readfile.h"
#include "tools/nuv-apps-config/report/valuetext.h"
#include "tools/nuv-apps-config/text/spelling.h"

#include <QFileInfo>
#include <QSettings>

namespace {

const char List[] = "Applications";
const int MostListed = 10;

} // namespace

std::unique_ptr<LoadedFile> LoadedFile::open(const QString &name, const Invocation &invocation,
                                             ExitStatus *status)
{
    ConfigurationFile::Choice choice;
    choice.path = name;
    choice.why = QLatin1String("named on the command line");
    if (name.isEmpty())
        choice = ConfigurationFile::choice();
    *status = Trouble;
    if (choice.path.isEmpty()) {
        Output::complain(QLatin1String("there is no configuration file: ") + choice.why);
        return nullptr;
    }
    if (!choice.warning.isEmpty())
        Output::complain(choice.path + QLatin1String(": warning: ") + choice.warning);
    QString error;
    std::unique_ptr<LoadedFile> file(new LoadedFile);
    file->m_why = choice.why;
    file->m_analysis = readFile(choice.path, invocation, &error);
    if (file->m_analysis && file->load(&error))
        return file;
    *status = file->m_analysis && error != LibraryView::noMemory() ? Found : Trouble;
    Output::complain(choice.path + QLatin1String(": ") + error + whereItIsATag(name));
    return nullptr;
}

// For "show tv", which was meant for the application of that tag.
QString LoadedFile::whereItIsATag(const QString &name)
{
    const QString path = ConfigurationFile::choice().path;
    if (name.isEmpty() || path.isEmpty() || QFileInfo::exists(name))
        return QString();
    Invocation invocation;
    QString error;
    LoadedFile chosen;
    chosen.m_analysis = readFile(path, invocation, &error);
    if (!chosen.m_analysis || !chosen.load(&error) || !chosen.m_tags.contains(name))
        return QString();
    return QString(QLatin1String("; it is an application of %1, and the file comes before the tag"))
        .arg(path);
}

bool LoadedFile::hasTag(const QString &tag) const
{
    if (state().applications.contains(tag))
        return true;
    QString what = QString(QLatin1String("%1 has no application \"%2\"")).arg(name(), tag);
    const QString meant = Spelling::didYouMean(tag, m_tags);
    if (!state().isUsable())
        what += QLatin1String("; ") + unusableText();
    else if (QFileInfo(tag).isFile())
        what += QString(QLatin1String("; \"%1\" is a file, and the file comes before the tag"))
                    .arg(tag);
    else if (!meant.isEmpty())
        what += meant;
    else if (!m_tags.isEmpty() && m_tags.size() <= MostListed)
        what += QLatin1String("; it has ") + m_tags.join(QLatin1String(", "));
    Output::complain(what);
    return false;
}

bool LoadedFile::load(QString *error)
{
    *error = m_analysis->danger();
    if (!error->isEmpty())
        return false;
    m_view = LibraryView::load(m_analysis->source.bytes(), error);
    if (!m_view)
        return false;
    findApplications();
    return true;
}

// As the loader goes through the elements: the first application with a tag wins.
void LoadedFile::findApplications()
{
    if (!state().isUsable())
        return;
    for (int i = 0; i < m_view->elementCount(); ++i) {
        const QVariant value =
            settings().value(QString(QLatin1String("Applications/%1/Tag")).arg(i + 1));
        const QString tag = value.toString();
        if (!value.isValid() || m_nodes.contains(tag))
            continue;
        m_tags.append(tag);
        m_nodes.insert(tag, elementNode(i, tag));
    }
}

const Node *LoadedFile::elementNode(int index, const QString &tag) const
{
    const Document &document = m_analysis->document;
    const Node::Child *list = document.member(document.rootNode(), QLatin1String(List));
    if (!list || document.at(*list).type != Node::Array)
        return nullptr;
    const std::vector<Node::Child> &elements = document.at(*list).children;
    if (index >= int(elements.size()))
        return nullptr;
    const Node &element = document.at(elements[size_t(index)]);
    const Node::Child *member = document.member(element, QLatin1String("Tag"));
    return member && document.at(*member).value.toString() == tag ? &element : nullptr;
}

bool LoadedFile::isRead() const
{
    return m_view->isParsed() && m_analysis->source.size() > 0;
}

void LoadedFile::complainUnread() const
{
    const QLatin1String why(m_view->isParsed() ? "it is empty" : "it has a syntax error");
    Output::complain(name() + QLatin1String(": nothing is read of it, because ") + why
                     + QLatin1String("; see check"));
}

QString LoadedFile::unusableText()
{
    return QLatin1String("no application is loaded: the version must be at least 1 and below 2");
}

double LoadedFile::version() const
{
    const float version = state().version;
    for (int digits = 1; digits < DigitsOfVersion; ++digits) {
        const QString text = QString::number(double(version), 'g', digits);
        if (text.toFloat() == version)
            return text.toDouble();
    }
    return double(version);
}

QVariant LoadedFile::port() const
{
    const quint32 port = state().remoteInspectorPort;
    return state().isUsable() && port != WebAppSettingsPrivate::NoPort ? QVariant(port)
                                                                       : QVariant();
}

const Node *LoadedFile::global() const
{
    const Document &document = m_analysis->document;
    const Node::Child *member = document.isEmpty()
        ? nullptr
        : document.member(document.rootNode(), QLatin1String("Global"));
    return member ? &document.at(*member) : nullptr;
}

const Node *LoadedFile::valueAt(const Node *object, const QString &path,
                                const QVariant &value) const
{
    const Node *node = object;
    for (const QString &key : path.split(QLatin1Char('/'))) {
        const Node::Child *member = node ? m_analysis->document.member(*node, key) : nullptr;
        node = member ? &m_analysis->document.at(*member) : nullptr;
    }
    if (!node)
        return nullptr;
    const bool isFromHere = value.userType() == QMetaType::QStringList
        ? node->type == Node::Array
        : ValueText::isSame(node->value, value);
    return isFromHere ? node : nullptr;
}

QString LoadedFile::placeText(const Node &node) const
{
    const Place place = m_analysis->source.place(node.begin);
    return QString(QLatin1String("%1:%2")).arg(place.line).arg(place.column);
}
