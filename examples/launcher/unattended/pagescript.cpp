// SPDX-License-Identifier: MIT
#include "unattended/pagescript.h"

#include <QUrl>
#include <QVariant>
#include <QWebFrame>

namespace {

// An answer of the form { ok, text }, so that a script that throws is told from one that answers. The
// script is percent-encoded and replaces %1, so it needs no quoting.
const char question[] = "(function() {"
                        "try {"
                        "    var value = (0, eval)(decodeURIComponent('%1'));"
                        "    var json;"
                        "    try { json = JSON.stringify(value) } catch (cyclic) {}"
                        "    return { ok: true, text: json === undefined ? String(value) : json }"
                        "} catch (error) {"
                        "    return { ok: false, text: String(error) }"
                        "}"
                        "})()";

} // namespace

PageAnswer askPage(QWebFrame *frame, const QString &script)
{
    QString wrapped = QLatin1String(question);
    wrapped.replace(QLatin1String("%1"),
                    QString::fromLatin1(QUrl::toPercentEncoding(script).constData()));
    const QVariantMap result = frame->evaluateJavaScript(wrapped).toMap();
    PageAnswer answer;
    answer.ok = result.value(QLatin1String("ok")).toBool();
    answer.text = result.value(QLatin1String("text")).toString();
    return answer;
}
