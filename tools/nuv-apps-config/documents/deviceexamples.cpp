// SPDX-License-Identifier: MIT
#include "tools/nuv-apps-config/documents/deviceexamples.h"

#include <QResource>
#include <QString>

namespace {

// clang-format off
const std::vector<DeviceExample> table = {
    { "set-top-box", "A set-top box: a portal, and a player over the video",
      "Two applications that the launcher opens by their tags. Both handle the keys of the remote control themselves, so the browser does not move the focus. The portal is kept when it is closed, because its viewers come back to it; the player is transparent, and its pages may reach the broadcast, if they are of one of the two domains." },
    { "kiosk", "A kiosk: one application, nothing to leave it by",
      "The page fills the screen, is on the device, and may fetch from the network because it came with the device. Nothing of a visitor is kept for the next one: no disk cache, no cookies on disk, no local storage. A page that does not load stays blank; the script brings the visitor back." },
    { "hotel-television", "A hotel's television: a client certificate, and a proxy",
      "The global certificate is for every application without one of its own, if the launcher uses it so, as the reference launcher does: the library hands out both and inherits nothing. The bill has a key with a pass phrase. The paths are relative to the directory of the file, for `check` and for the reference launcher. Only the launcher's user should be able to read the keys and this file. The remark lets `check` pass where the certificates are not; delete it where they are." },
    { "development", "A development machine: an inspector and measures",
      "There is one inspector in a process. It is at the port of the application that is opened first, else at the global one. Frames, layers and addresses are shown, and nothing is taken from the disk cache. None of this belongs on a device that is sold: whoever reaches an inspector's port rules the application." },
};
// clang-format on

} // namespace

const std::vector<DeviceExample> &DeviceExamples::all()
{
    return table;
}

QByteArray DeviceExamples::configuration(const DeviceExample &example)
{
    return QResource(QLatin1String(":/configurations/") + QLatin1String(example.name)
                     + QLatin1String(".json"))
        .uncompressedData();
}
