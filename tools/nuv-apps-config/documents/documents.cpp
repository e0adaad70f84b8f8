// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/documents/documents.h"

#include "tools/nuv-apps-config/documents/reference.h"

namespace {

// A file that is made from the tables alone.
template<QByteArray (*Make)()>
QByteArray whole(const QByteArray &)
{
    return Make();
}

} // namespace

const std::vector<GeneratedFile> &generatedFiles()
{
    static const std::vector<GeneratedFile> files = {
        { "config/appconfig.h", Reference::describedAccessors },
        { "docs/configuration.md", whole<Reference::configurationPage> },
        { "docs/rules.md", whole<Reference::rulesPage> },
        { "docs/AppsConfig.schema.json", whole<Reference::schema> },
        { "tools/nuv-apps-config/man/AppsConfig.json.5", whole<Reference::formatManual> },
        { "tools/nuv-apps-config/man/nuv-apps-config.1", whole<Reference::programManual> },
    };
    return files;
}
