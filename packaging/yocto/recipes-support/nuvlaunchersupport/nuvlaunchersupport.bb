# SPDX-License-Identifier: MIT
SUMMARY = "Configuration and browser hooks for web application launchers"
SECTION = "libs"
LICENSE = "MIT"
LIC_FILES_CHKSUM = "file://LICENSE;md5=eb18fadbdb6a49b2cdc3b8014cc14883"

inherit externalsrc cmake_qt5

# The source is the tree that this recipe is in, unless the integrator names another: see README.md.
NUV_SRC_URI ??= ""
NUV_SRCREV ??= "INVALID"
NUV_VERSION ??= "${@nuv_version(d)}"
SRC_URI = "${NUV_SRC_URI}"
SRCREV = "${NUV_SRCREV}"
EXTERNALSRC = "${@'' if d.getVar('NUV_SRC_URI') else nuv_tree(d)}"
# The build leaves no links in the tree.
EXTERNALSRC_SYMLINKS = ""

# Tasks depend on the version, not on how and where it was read.
PV = "${NUV_VERSION}"
PV[vardepvalue] = "${PV}"

# The directory of the tree, or nothing where the layer was copied out of it.
def nuv_tree(d):
    tree = os.path.abspath(os.path.join(d.getVar('FILE_DIRNAME'), '..', '..', '..', '..'))
    return tree if os.path.exists(os.path.join(tree, 'CMakeLists.txt')) else ''

# The version that CMakeLists.txt of the tree has; the recipe is parsed again when that file changes.
def nuv_version(d):
    import re
    tree = nuv_tree(d)
    if not tree:
        return '0'
    path = os.path.join(tree, 'CMakeLists.txt')
    bb.parse.mark_dependency(d, path)
    with open(path) as file:
        found = re.search(r'project\(nuvlaunchersupport VERSION (\S+)', file.read())
    return found.group(1) if found else '0'

python () {
    if not d.getVar('EXTERNALSRC') and not d.getVar('NUV_SRC_URI'):
        raise bb.parse.SkipRecipe('the layer is not in its source tree: set NUV_SRC_URI and NUV_VERSION')
    if d.getVar('PV') == '0':
        raise bb.parse.SkipRecipe('no version was found: set NUV_VERSION')
    chosen = d.getVar('PACKAGECONFIG').split()
    if 'launcher' in chosen and 'hooks' not in chosen:
        raise bb.parse.SkipRecipe('PACKAGECONFIG has launcher, which needs hooks')
}

PACKAGECONFIG ??= "hooks"
# For the machine that builds, and for the SDK, it is the checker of configuration files.
PACKAGECONFIG:class-native = "tools"
PACKAGECONFIG:class-nativesdk = "tools"
PACKAGECONFIG[hooks] = "-DNUV_WITH_HOOKS=ON,-DNUV_WITH_HOOKS=OFF,qtwebkit"
PACKAGECONFIG[launcher] = "-DNUV_BUILD_EXAMPLES=ON,-DNUV_BUILD_EXAMPLES=OFF"
PACKAGECONFIG[tools] = "-DNUV_BUILD_TOOLS=ON,-DNUV_BUILD_TOOLS=OFF"
# The distribution chooses how its programs are hardened.
EXTRA_OECMAKE += "-DBUILD_TESTING=OFF -DNUV_WARNINGS_AS_ERRORS=OFF -DNUV_HARDENING=OFF"

PACKAGES =+ "${PN}-launcher ${PN}-tools"
FILES:${PN}-launcher = "\
    ${bindir}/nuv-launcher ${datadir}/nuvlaunchersupport/launcher \
    ${datadir}/bash-completion/completions/nuv-launcher \
    ${datadir}/fish/vendor_completions.d/nuv-launcher.fish \
    ${datadir}/zsh/site-functions/_nuv-launcher"
FILES:${PN}-tools = "\
    ${bindir}/nuv-apps-config \
    ${datadir}/bash-completion ${datadir}/fish ${datadir}/zsh \
    ${datadir}/nuvlaunchersupport/AppsConfig.schema.json"

# The file for qmake.
FILES:${PN}-dev += "${libdir}/nuvlaunchersupport"

BBCLASSEXTEND = "native nativesdk"
