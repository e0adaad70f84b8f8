// SPDX-License-Identifier: MIT
#ifndef REMOTEINSPECTOR_H
#define REMOTEINSPECTOR_H

#include <QtGlobal>

class QString;
class QWebPage;

/// The engine's remote inspector. There is one server in a process, for all its pages: it stays at the
/// port where it was opened first, on every address of the machine. It shows what pages write to their
/// consoles from its opening on, also before somebody looks.
namespace RemoteInspector {

/// Opens it; nothing happens when it is open at `port` already, and for port 0. Returns an empty text,
/// or why it cannot be opened.
QString open(QWebPage *page, quint16 port);

/// Where it is open; 0 when it is not.
quint16 port();

} // namespace RemoteInspector

#endif // REMOTEINSPECTOR_H
