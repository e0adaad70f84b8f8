// SPDX-License-Identifier: MIT
// What nuv-apps-config finds in a file: an error exactly where the library reads nothing, and findings,
// places and secrets that are inside the file; the forms of its report; and what its repairs leave.

#include "fuzz/fuzztarget.h"
#include "json/jsonparser.h"
#include "json/varianttree.h"
#include "tests/support/temporarydir.h"
#include "tools/nuv-apps-config/analysis/analysis.h"
#include "tools/nuv-apps-config/repairs/repairedfile.h"
#include "tools/nuv-apps-config/report/reports.h"
#include "tools/nuv-apps-config/report/unifieddiff.h"

namespace {

bool isReadByLibrary(const QByteArray &bytes)
{
    QString error;
    QVariant tree = parseJson(bytes, &error);
    const VariantTree::Disposer disposer(tree);
    return error.isEmpty();
}

bool isUnreadable(const Findings &findings)
{
    return findings.hasSyntaxError() || findings.has("empty-file") || findings.has("not-text");
}

void checkPlace(const SourceText &source, int offset)
{
    Fuzz::require(offset >= -1 && offset <= source.size(), "a finding is inside the file");
    if (offset < 0)
        return;
    const Place place = source.place(offset);
    Fuzz::require(place.line >= 1 && place.column >= 1, "places begin at 1");
}

void checkFinding(const SourceText &source, const Finding &finding)
{
    checkPlace(source, finding.offset);
    // What is missing at the end of a file is found after its last byte.
    Fuzz::require(finding.length >= 0 && finding.offset + finding.length <= source.size() + 1,
                  "a finding ends with the file");
    Fuzz::require(!finding.text.isEmpty(), "a finding has a message");
    for (const Remark &remark : finding.remarks)
        checkPlace(source, remark.offset);
}

void checkSecrets(const Analysis &analysis)
{
    int end = 0;
    for (const Range &range : analysis.secrets->ranges().all()) {
        Fuzz::require(range.begin >= end && range.end > range.begin, "secrets come in order");
        end = range.end;
    }
    Fuzz::require(end <= analysis.source.size(), "secrets are inside the file");
}

// In one of the forms, the next one for the next size of an input.
void report(const Analysis &analysis)
{
    static const Format formats[] = { Format::Text, Format::Json, Format::Sarif, Format::Github };
    static const bool isQuiet = std::freopen("/dev/null", "w", stdout) != nullptr;
    Fuzz::require(isQuiet, "the report goes nowhere");
    Output output;
    Invocation invocation;
    invocation.format = formats[analysis.source.size() % 4];
    const std::unique_ptr<Report> report = Report::make(invocation, output);
    report->add(analysis, Effect::of(analysis));
    report->finish();
}

// What was read is still read after the repairs, and there is nothing to repair a second time.
void repair(std::unique_ptr<Analysis> analysis, const QString &folder)
{
    const RepairedFile file(std::move(analysis), folder);
    if (!file.isChanged())
        return;
    Fuzz::require(!isReadByLibrary(file.before().source.bytes()) || isReadByLibrary(file.bytes()),
                  "a repaired file is read if it was read before");
    Fuzz::require(!unifiedDiff(file).isEmpty(), "repairs are shown as a diff");
    const RepairedFile again(analyse(QLatin1String("input.json"), file.bytes(), folder), folder);
    Fuzz::require(!again.isChanged(), "a second repair changes nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const TemporaryDir folder;
    Fuzz::silenceWarnings();
    const FuzzInput input(data, size);
    auto analysis = analyse(QLatin1String("input.json"), input.bytes(), folder.path());
    const Findings &findings = analysis->findings;
    for (const Finding &finding : findings.all())
        checkFinding(analysis->source, finding);
    checkSecrets(*analysis);
    report(*analysis);
    Fuzz::require(isUnreadable(findings) != isReadByLibrary(input.bytes()),
                  "there is an error exactly where the library finds one");
    repair(std::move(analysis), folder.path());
    return 0;
}
