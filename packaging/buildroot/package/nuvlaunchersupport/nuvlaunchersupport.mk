################################################################################
#
# nuvlaunchersupport, SPDX-License-Identifier: MIT
#
################################################################################

# The tree that this file is in.
NUVLAUNCHERSUPPORT_SITE = $(abspath $(BR2_EXTERNAL_NUVLAUNCHERSUPPORT_PATH)/../..)
NUVLAUNCHERSUPPORT_SITE_METHOD = local
NUVLAUNCHERSUPPORT_VERSION = $(shell $(NUVLAUNCHERSUPPORT_SITE)/scripts/print-version)
NUVLAUNCHERSUPPORT_LICENSE = MIT
NUVLAUNCHERSUPPORT_LICENSE_FILES = LICENSE
NUVLAUNCHERSUPPORT_INSTALL_STAGING = YES
NUVLAUNCHERSUPPORT_DEPENDENCIES = qt5base

nuvlaunchersupport-switch = $(if $(BR2_PACKAGE_NUVLAUNCHERSUPPORT_$(1)),ON,OFF)
# Buildroot's own options choose how programs are hardened.
nuvlaunchersupport-common-opts = \
	-DBUILD_TESTING=OFF \
	-DNUV_WARNINGS_AS_ERRORS=OFF \
	-DNUV_HARDENING=OFF
NUVLAUNCHERSUPPORT_CONF_OPTS = \
	$(nuvlaunchersupport-common-opts) \
	-DNUV_WITH_HOOKS=$(call nuvlaunchersupport-switch,HOOKS) \
	-DNUV_BUILD_EXAMPLES=$(call nuvlaunchersupport-switch,LAUNCHER) \
	-DNUV_BUILD_TOOLS=$(call nuvlaunchersupport-switch,TOOLS)

ifeq ($(BR2_PACKAGE_NUVLAUNCHERSUPPORT_HOOKS),y)
NUVLAUNCHERSUPPORT_DEPENDENCIES += qt5webkit
endif

# The checker for the machine that builds. Buildroot has no Qt 5 for that machine, so it is the machine's
# own: the two dependencies that Buildroot would derive from qt5base and qt5webkit do not exist.
HOST_NUVLAUNCHERSUPPORT_DEPENDENCIES = host-pkgconf
HOST_NUVLAUNCHERSUPPORT_CONF_OPTS = \
	$(nuvlaunchersupport-common-opts) \
	-DNUV_WITH_HOOKS=OFF \
	-DNUV_BUILD_EXAMPLES=OFF \
	-DNUV_BUILD_TOOLS=ON
HOST_NUVLAUNCHERSUPPORT_BUILD_OPTS = --target nuv-apps-config
HOST_NUVLAUNCHERSUPPORT_INSTALL_OPTS = --component tools

# The check looks at the finished root file system, after the overlays, which often bring the file.
nuvlaunchersupport-checked = $(call qstrip,$(BR2_PACKAGE_NUVLAUNCHERSUPPORT_CHECK))
ifneq ($(nuvlaunchersupport-checked),)
NUVLAUNCHERSUPPORT_DEPENDENCIES += host-nuvlaunchersupport
define NUVLAUNCHERSUPPORT_CHECK_CONFIGURATION
	$(HOST_DIR)/bin/nuv-apps-config check --root $(TARGET_DIR) $(TARGET_DIR)$(nuvlaunchersupport-checked)
endef
NUVLAUNCHERSUPPORT_ROOTFS_PRE_CMD_HOOKS += NUVLAUNCHERSUPPORT_CHECK_CONFIGURATION
endif

$(eval $(cmake-package))
$(eval $(host-cmake-package))
