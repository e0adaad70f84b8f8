// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/documents/documents.h"

#include "tools/nuv-apps-config/documents/reference.h"

const std::vector<GeneratedFile> &generatedFiles()
{
    static const std::vector<GeneratedFile> files = {
        { "docs/configuration.md", Reference::configurationPage },
        { "docs/rules.md", Reference::rulesPage },
        { "docs/AppsConfig.schema.json", Reference::schema },
        { "tools/nuv-apps-config/man/AppsConfig.json.5", Reference::formatManual },
        { "tools/nuv-apps-config/man/nuv-apps-config.1", Reference::programManual },
    };
    return files;
}
