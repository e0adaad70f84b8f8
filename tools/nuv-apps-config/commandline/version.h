// SPDX-License-Identifier: MIT
#ifndef VERSION_H
#define VERSION_H

/// NUV_VERSION comes from the build: it is the project's.
const char ProgramVersion[] = NUV_VERSION;

#endif // VERSION_H
