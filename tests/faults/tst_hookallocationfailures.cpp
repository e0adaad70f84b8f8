// SPDX-License-Identifier: MIT
#include "hooks/networkaccessmanager.h"
#include "hooks/zarexextbase.h"
#include "tests/faults/allocations.h"
#include "tests/support/testmain.h"

#include <QScopedPointer>

#include <cstdio>
#include <new>

/// Makes one of the objects of the hooks.
typedef QObject *(*Maker)();

Q_DECLARE_METATYPE(Maker)

namespace {

QObject *makeManager()
{
    return createNetworkAccessManager(nullptr);
}

QObject *makeExtension()
{
    return new ZarexExtBase(nullptr, nullptr);
}

bool isMade(Maker make)
{
    try {
        const QScopedPointer<QObject> object(make());
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

} // namespace

/// The objects of the hooks, with the n-th allocation failing, for every n until they are made.
class tst_HookAllocationFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectsAreMadeOrNothingIsLeft_data();
    void objectsAreMadeOrNothingIsLeft();
};

void tst_HookAllocationFailures::objectsAreMadeOrNothingIsLeft_data()
{
    QTest::addColumn<Maker>("make");
    QTest::addColumn<int>("duration");
    const auto rows = [](const QByteArray &name, Maker make) {
        QTest::newRow(name.constData()) << make << int(Allocations::Once);
        QTest::newRow((name + ", from then on").constData())
            << make << int(Allocations::FromThenOn);
    };
    rows("network access manager", makeManager);
    rows("extension object", makeExtension);
}

void tst_HookAllocationFailures::objectsAreMadeOrNothingIsLeft()
{
    QFETCH(Maker, make);
    QFETCH(int, duration);
    QVERIFY(isMade(make)); // and with it what the toolkit makes once
    int points = 0;
    for (bool hasFailed = true; hasFailed; points += hasFailed ? 1 : 0) {
        const long before = Allocations::live();
        Allocations::failAt(points + 1, Allocations::Duration(duration));
        const bool isComplete = isMade(make);
        hasFailed = Allocations::succeed();
        QCOMPARE(isComplete, !hasFailed);
        QCOMPARE(Allocations::live(), before);
    }
    std::printf("%s: %d points, as many exceptions\n", QTest::currentDataTag(), points);
    QVERIFY(points > 0);
}

NUV_TEST_MAIN(tst_HookAllocationFailures)

#include "tst_hookallocationfailures.moc"
