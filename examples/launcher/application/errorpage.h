// SPDX-License-Identifier: MIT
#ifndef ERRORPAGE_H
#define ERRORPAGE_H

#include <QByteArray>

class QString;
class QUrl;

/// What is shown instead of a page that does not load.
namespace ErrorPage {

/// A document in UTF-8. It has no script, and shows no password of the address.
QByteArray html(const QUrl &address, const QString &reason);

} // namespace ErrorPage

#endif // ERRORPAGE_H
