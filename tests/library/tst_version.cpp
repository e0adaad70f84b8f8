// SPDX-License-Identifier: MIT
#include "tests/support/testmain.h"

#include <nuvlaunchersupport_version.h>

#include <QString>
#include <QStringList>

/// What headers and library say of their version is the version of the project.
class tst_Version : public QObject
{
    Q_OBJECT

private slots:
    void headersAndLibraryHaveTheVersionOfTheProject();
    void theNumberIsMadeOfTheThreeNumbers();
    void aLaterVersionIsALargerNumber();
};

void tst_Version::headersAndLibraryHaveTheVersionOfTheProject()
{
    const QString version = QLatin1String(PROJECT_VERSION);
    QCOMPARE(QString(QLatin1String(NUVLAUNCHERSUPPORT_VERSION_STR)), version);
    QCOMPARE(QString(QLatin1String(nuvLauncherSupportVersion())), version);
}

void tst_Version::theNumberIsMadeOfTheThreeNumbers()
{
    const QStringList numbers = QString(QLatin1String(PROJECT_VERSION)).split(QLatin1Char('.'));
    const int major = numbers.at(0).toInt();
    const int minor = numbers.at(1).toInt();
    const int patch = numbers.at(2).toInt();
    QCOMPARE(NUVLAUNCHERSUPPORT_VERSION_MAJOR, major);
    QCOMPARE(NUVLAUNCHERSUPPORT_VERSION_MINOR, minor);
    QCOMPARE(NUVLAUNCHERSUPPORT_VERSION_PATCH, patch);
    QCOMPARE(NUVLAUNCHERSUPPORT_VERSION, major * 0x10000 + minor * 0x100 + patch);
}

void tst_Version::aLaterVersionIsALargerNumber()
{
    const int versions[] = { NUVLAUNCHERSUPPORT_VERSION_CHECK(1, 0, 0),
                             NUVLAUNCHERSUPPORT_VERSION_CHECK(1, 0, 255),
                             NUVLAUNCHERSUPPORT_VERSION_CHECK(1, 1, 0),
                             NUVLAUNCHERSUPPORT_VERSION_CHECK(1, 255, 255),
                             NUVLAUNCHERSUPPORT_VERSION_CHECK(2, 0, 0) };
    for (int i = 1; i < int(sizeof versions / sizeof versions[0]); ++i)
        QVERIFY(versions[i - 1] < versions[i]);
}

NUV_TEST_MAIN(tst_Version)
#include "tst_version.moc"
