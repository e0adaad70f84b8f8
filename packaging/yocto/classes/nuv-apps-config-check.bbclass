# SPDX-License-Identifier: MIT
# For an image: checks the launcher's configuration file in the finished root file system, so that the
# pages, scripts and certificates that it names are looked for there. A mistake ends do_rootfs.
#
#     inherit nuv-apps-config-check
#     NUV_APPS_CONFIG = "${sysconfdir}/AppsConfig.json"

# The file, as the device names it.
NUV_APPS_CONFIG ??= ""
# More options for nuv-apps-config check, such as --fail-on error.
NUV_APPS_CONFIG_OPTIONS ??= ""

do_rootfs[depends] += "nuvlaunchersupport-native:do_populate_sysroot"
do_rootfs[vardeps] += "nuv_check_apps_config"
ROOTFS_POSTPROCESS_COMMAND += "nuv_check_apps_config;"

nuv_check_apps_config() {
    if [ -z "${NUV_APPS_CONFIG}" ]; then
        bbfatal "nuv-apps-config-check: set NUV_APPS_CONFIG to the path of the file in the image."
    fi
    nuv-apps-config check ${NUV_APPS_CONFIG_OPTIONS} --root "${IMAGE_ROOTFS}" \
        "${IMAGE_ROOTFS}${NUV_APPS_CONFIG}" \
        || bbfatal "nuv-apps-config check refuses ${NUV_APPS_CONFIG}: its findings are in the log of this task."
}
