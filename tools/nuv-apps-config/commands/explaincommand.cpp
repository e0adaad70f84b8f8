#include "tools/nuv-apps-config/commands/program.h"

#include "tools/nuv-apps-config/documents/reference.h"
#include "tools/nuv-apps-config/text/spelling.h"

namespace {

QString nearestName(const QString &name)
{
    QStringList names;
    for (const Property &property : Properties::all())
        names.append(QLatin1String(property.key));
    for (const Rule &rule : Rules::all())
        names.append(QLatin1String(rule.id));
    return Spelling::nearest(name, names);
}

} // namespace

// A key that several sections have is explained once for each.
int Program::explain(const Invocation &invocation, Output &output)
{
    const QString name = invocation.arguments.at(0);
    if (const Rule *rule = Rules::lookUp(name)) {
        output.write(Reference::explain(*rule));
        return Success;
    }
    const Property *found = Properties::findAnywhere(name);
    if (!found) {
        const QString nearest = nearestName(name);
        Output::complain(
            QString(QLatin1String("there is no key and no rule \"%1\"%2"))
                .arg(name,
                     nearest.isEmpty()
                         ? QString()
                         : QString(QLatin1String("; did you mean \"%1\"?")).arg(nearest)));
        return Found;
    }
    output.write(Reference::explain(*found));
    for (const Property &property : Properties::all()) {
        if (&property != found && qstrcmp(property.key, found->key) == 0)
            output.write(QLatin1String("\n") + Reference::explain(property));
    }
    return Success;
}
