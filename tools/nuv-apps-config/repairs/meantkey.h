// SPDX-License-Identifier: MIT
#ifndef MEANTKEY_H
#define MEANTKEY_H

#include "tools/nuv-apps-config/properties/properties.h"

#include <QString>

/// The key of the section that can only be meant by one in another case or spelling: "Url" by "url",
/// "UseWebGL" by "use_web_gl", "Frameless" by "Framless". The key itself where the section knows it, and
/// empty where more than one may be meant, or none.
///
/// Letters in front of a key or after it, or a number in it, may have been put there to switch it off.
QString meantKey(Section section, const QString &key);

#endif // MEANTKEY_H
