SUMMARY = "Configuration and browser hooks for web application launchers"
SECTION = "libs"
LICENSE = "MIT"
LIC_FILES_CHKSUM = "file://LICENSE;md5=eb18fadbdb6a49b2cdc3b8014cc14883"

inherit externalsrc cmake_qt5

# The tree that this recipe lies in, whose CMakeLists.txt has the version.
EXTERNALSRC = "${@os.path.abspath(os.path.join(d.getVar('FILE_DIRNAME'), '..', '..', '..', '..'))}"
PV = "${@nuv_version(d)}"

def nuv_version(d):
    import re
    with open(os.path.join(d.getVar('EXTERNALSRC'), 'CMakeLists.txt')) as file:
        return re.search(r'project\(nuvlaunchersupport VERSION (\S+)', file.read()).group(1)

DEPENDS = "qtbase"
PACKAGECONFIG ??= "hooks"
PACKAGECONFIG[hooks] = "-DNUV_WITH_HOOKS=ON,-DNUV_WITH_HOOKS=OFF,qtwebkit"
PACKAGECONFIG[launcher] = "-DNUV_BUILD_EXAMPLES=ON,-DNUV_BUILD_EXAMPLES=OFF"
PACKAGECONFIG[tools] = "-DNUV_BUILD_TOOLS=ON,-DNUV_BUILD_TOOLS=OFF"
EXTRA_OECMAKE += "-DBUILD_TESTING=OFF -DNUV_WARNINGS_AS_ERRORS=OFF"

PACKAGES =+ "${PN}-launcher ${PN}-tools"
FILES:${PN}-launcher = "${bindir}/nuv-launcher ${datadir}/nuvlaunchersupport/launcher"
FILES:${PN}-tools = "\
    ${bindir}/nuv-apps-config \
    ${datadir}/bash-completion ${datadir}/fish ${datadir}/zsh \
    ${datadir}/nuvlaunchersupport/AppsConfig.schema.json"
