################################################################################
#
# nuvlaunchersupport
#
################################################################################

# The tree that this file lies in.
NUVLAUNCHERSUPPORT_SITE = $(abspath $(BR2_EXTERNAL_NUVLAUNCHERSUPPORT_PATH)/../..)
NUVLAUNCHERSUPPORT_SITE_METHOD = local
NUVLAUNCHERSUPPORT_VERSION = $(shell $(NUVLAUNCHERSUPPORT_SITE)/scripts/print-version)
NUVLAUNCHERSUPPORT_LICENSE = MIT
NUVLAUNCHERSUPPORT_LICENSE_FILES = LICENSE
NUVLAUNCHERSUPPORT_INSTALL_STAGING = YES
NUVLAUNCHERSUPPORT_DEPENDENCIES = qt5base

nuvlaunchersupport-switch = $(if $(BR2_PACKAGE_NUVLAUNCHERSUPPORT_$(1)),ON,OFF)
NUVLAUNCHERSUPPORT_CONF_OPTS = \
	-DBUILD_TESTING=OFF \
	-DNUV_WARNINGS_AS_ERRORS=OFF \
	-DNUV_WITH_HOOKS=$(call nuvlaunchersupport-switch,HOOKS) \
	-DNUV_BUILD_EXAMPLES=$(call nuvlaunchersupport-switch,LAUNCHER) \
	-DNUV_BUILD_TOOLS=$(call nuvlaunchersupport-switch,TOOLS)

ifeq ($(BR2_PACKAGE_NUVLAUNCHERSUPPORT_HOOKS),y)
NUVLAUNCHERSUPPORT_DEPENDENCIES += qt5webkit
endif

$(eval $(cmake-package))
