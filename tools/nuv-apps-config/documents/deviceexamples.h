// SPDX-License-Identifier: MIT
#ifndef DEVICEEXAMPLES_H
#define DEVICEEXAMPLES_H

#include <QByteArray>

#include <vector>

/// A configuration for a common kind of device, of examples/configurations.
struct DeviceExample {
    const char *name; ///< of the file, without its suffix
    const char *title;
    const char *description; ///< why it is as it is
};

namespace DeviceExamples {

const std::vector<DeviceExample> &all();

/// The text of the file.
QByteArray configuration(const DeviceExample &example);

} // namespace DeviceExamples

#endif // DEVICEEXAMPLES_H
