// SPDX-License-Identifier: MIT
#include "application/errorpage.h"

#include "program/console.h"

#include <QString>
#include <QUrl>

namespace {

const char document[] =
    "<!DOCTYPE html>\n"
    "<html>\n"
    "<head><meta charset=\"utf-8\"><title>This page does not load</title>\n"
    "<style>\n"
    "    body { margin: 0; padding: 12% 10%; background: #f5f3ee; color: #23262b;\n"
    "           font: 18px/1.5 \"DejaVu Sans\", sans-serif; }\n"
    "    h1 { margin: 0 0 16px; font-size: 34px; font-weight: normal; }\n"
    "    p { margin: 0 0 10px; max-width: 46em; word-wrap: break-word; }\n"
    "    #address { color: #6d6f73; }\n"
    "</style></head>\n"
    "<body>\n"
    "<h1>This page does not load</h1>\n"
    "<p id=\"reason\">%1</p>\n"
    "<p id=\"address\">%2</p>\n"
    "</body>\n"
    "</html>\n";

QString escaped(const QString &text)
{
    QString result = Console::shown(text);
    result.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    result.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    return result.replace(QLatin1Char('>'), QLatin1String("&gt;"));
}

} // namespace

QByteArray ErrorPage::html(const QUrl &address, const QString &reason)
{
    return QString(QLatin1String(document))
        .arg(escaped(reason), escaped(address.toString()))
        .toUtf8();
}
