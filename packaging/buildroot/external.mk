# SPDX-License-Identifier: MIT
include $(BR2_EXTERNAL_NUVLAUNCHERSUPPORT_PATH)/package/nuvlaunchersupport/nuvlaunchersupport.mk
