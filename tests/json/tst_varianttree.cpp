// SPDX-License-Identifier: MIT
#include "json/varianttree.h"

#include "global/qtcompat.h"
#include "tests/json/jsoninput.h"
#include "tests/support/describe.h"
#include "tests/support/smallstackthread.h"
#include "tests/support/testmain.h"

#include <stdexcept>

namespace {

const int Deep = 100000;

// A value that counts how many of its kind there are.
struct Counted {
    Counted() { ++count; }
    Counted(const Counted &) { ++count; }
    ~Counted() { --count; }
    Counted &operator=(const Counted &) { return *this; }

    static int count;
};

int Counted::count = 0;

QVariant emptyMap()
{
    return QtCompat::toVariant(QtCompat::MultiMap());
}

QVariant listAround(QVariant inner)
{
    QVariant list = QVariantList();
    VariantTree::list(list).append(QVariant());
    VariantTree::list(list).last().swap(inner);
    return list;
}

QVariant mapAround(QVariant inner)
{
    QVariant map = emptyMap();
    QtCompat::insertMulti(VariantTree::map(map), QLatin1String("a")).swap(inner);
    return map;
}

// A tree whose levels are lists ('L') and maps ('M') by turns, as `kinds` has them, from the
// inside.
QVariant nested(const char *kinds, int depth, QVariant inner)
{
    const int count = int(qstrlen(kinds));
    QVariant tree;
    tree.swap(inner);
    for (int i = 0; i < depth; ++i) {
        QVariant level;
        level.swap(tree);
        QVariant around = kinds[i % count] == 'L' ? listAround(QVariant()) : mapAround(QVariant());
        QVariant &slot = kinds[i % count] == 'L' ? VariantTree::list(around).last()
                                                 : VariantTree::map(around).begin().value();
        slot.swap(level);
        tree.swap(around);
    }
    return tree;
}

} // namespace

Q_DECLARE_METATYPE(Counted)

namespace {

QVariant counted()
{
    return QVariant::fromValue(Counted());
}

} // namespace

class tst_VariantTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void onlyMapsAndListsAreContainers();
    void containersAreChangedInPlace();
    void scalarsBecomeInvalid();
    void emptyContainersBecomeInvalid();
    void everyValueIsFreed();
    void allEntriesOfAKeyAreFreed();
    void deepTreesNeedNoStack_data();
    void deepTreesNeedNoStack();
    void wideTreesAreTakenApart();
    void aCopyOfTheRootStaysWhole();
    void aSharedBranchStaysWhole();
    void aSharedBranchIsFreedWithItsLastHolder();
    void theSameBranchTwiceIsFreedOnce();
    void aDeepSharedBranchNeedsNoStack();
    void aDisposerActsAtTheEndOfItsBlock();
    void aDisposerActsWhenTheBlockThrows();
};

void tst_VariantTree::init()
{
    QCOMPARE(Counted::count, 0);
}

void tst_VariantTree::onlyMapsAndListsAreContainers()
{
    QVERIFY(VariantTree::isMap(emptyMap()));
    QVERIFY(!VariantTree::isMap(QVariantList()));
    QVERIFY(!VariantTree::isMap(QVariantHash()));
    QVERIFY(!VariantTree::isMap(QVariant()));
    QVERIFY(VariantTree::isList(QVariantList()));
    QVERIFY(!VariantTree::isList(emptyMap()));
    QVERIFY(!VariantTree::isList(QStringList()));
    QVERIFY(!VariantTree::isList(QVariant()));
}

void tst_VariantTree::containersAreChangedInPlace()
{
    QVariant map = emptyMap();
    QVariant list = QVariantList();
    const QtCompat::MultiMap *const mapBefore = &VariantTree::map(map);

    VariantTree::map(map).insert(QLatin1String("k"), 1);
    VariantTree::list(list).append(2);

    QCOMPARE(describe(map), json("{'k': int 1}"));
    QCOMPARE(describe(list), json("[int 2]"));
    QVERIFY(&VariantTree::map(map) == mapBefore);
}

void tst_VariantTree::scalarsBecomeInvalid()
{
    QVariant values[] = { QVariant(),    QVariant(1),         QVariant(true),
                          QVariant(2.5), QVariant(QString()), QVariant(QStringList()) };
    for (QVariant &value : values) {
        VariantTree::dispose(value);
        QVERIFY(!value.isValid());
    }
}

void tst_VariantTree::emptyContainersBecomeInvalid()
{
    QVariant map = emptyMap();
    QVariant list = QVariantList();

    VariantTree::dispose(map);
    VariantTree::dispose(list);

    QVERIFY(!map.isValid());
    QVERIFY(!list.isValid());
}

void tst_VariantTree::everyValueIsFreed()
{
    QVariantList list;
    list << counted() << mapAround(counted()) << listAround(listAround(counted())) << QVariant()
         << QVariant(QVariantList()) << emptyMap();
    QVariant tree = mapAround(list);
    list.clear();
    QCOMPARE(Counted::count, 3);

    VariantTree::dispose(tree);

    QCOMPARE(Counted::count, 0);
    QVERIFY(!tree.isValid());
}

void tst_VariantTree::allEntriesOfAKeyAreFreed()
{
    QVariant tree = emptyMap();
    for (int i = 0; i < 3; ++i)
        QtCompat::insertMulti(VariantTree::map(tree), QLatin1String("a")) = listAround(counted());
    QCOMPARE(Counted::count, 3);

    VariantTree::dispose(tree);

    QCOMPARE(Counted::count, 0);
}

void tst_VariantTree::deepTreesNeedNoStack_data()
{
    QTest::addColumn<QByteArray>("kinds");

    QTest::newRow("lists") << QByteArray("L");
    QTest::newRow("maps") << QByteArray("M");
    QTest::newRow("lists and maps by turns") << QByteArray("LM");
    QTest::newRow("two lists and a map") << QByteArray("LLM");
}

void tst_VariantTree::deepTreesNeedNoStack()
{
    QFETCH(QByteArray, kinds);

    bool isInvalid = false;
    int countBefore = 0;
    runOnSmallStack([&] {
        QVariant tree = nested(kinds.constData(), Deep, counted());
        countBefore = Counted::count;
        VariantTree::dispose(tree);
        isInvalid = !tree.isValid();
    });

    QCOMPARE(countBefore, 1);
    QCOMPARE(Counted::count, 0);
    QVERIFY(isInvalid);
}

void tst_VariantTree::wideTreesAreTakenApart()
{
    QVariant tree = QVariantList();
    for (int i = 0; i < 20000; ++i) {
        VariantTree::list(tree).append(listAround(counted()));
        VariantTree::list(tree).append(mapAround(counted()));
        VariantTree::list(tree).append(counted());
    }
    QCOMPARE(Counted::count, 60000);

    VariantTree::dispose(tree);

    QCOMPARE(Counted::count, 0);
}

void tst_VariantTree::aCopyOfTheRootStaysWhole()
{
    QVariant tree = nested("LM", 3, 5);
    const QVariant copy = tree;

    VariantTree::dispose(tree);

    QVERIFY(!tree.isValid());
    QCOMPARE(describe(copy), json("[{'a': [int 5]}]"));
}

void tst_VariantTree::aSharedBranchStaysWhole()
{
    const QVariant list = nested("LM", 4, 5);
    const QVariant map = nested("ML", 4, 6);
    QVariant tree = QVariantList() << list << map << 7;

    VariantTree::dispose(tree);

    QVERIFY(!tree.isValid());
    QCOMPARE(describe(list), json("{'a': [{'a': [int 5]}]}"));
    QCOMPARE(describe(map), json("[{'a': [{'a': int 6}]}]"));
}

void tst_VariantTree::aSharedBranchIsFreedWithItsLastHolder()
{
    QVariant branch = nested("LM", 4, counted());
    QVariant tree = QVariantList() << branch << counted();
    QCOMPARE(Counted::count, 2);

    VariantTree::dispose(tree);
    QCOMPARE(Counted::count, 1);

    VariantTree::dispose(branch);
    QCOMPARE(Counted::count, 0);
}

void tst_VariantTree::theSameBranchTwiceIsFreedOnce()
{
    QVariant branch = nested("LM", 4, counted());
    QVariant tree = QVariantList() << branch << branch << mapAround(branch);
    branch.clear();
    QCOMPARE(Counted::count, 1);

    VariantTree::dispose(tree);

    QCOMPARE(Counted::count, 0);
}

void tst_VariantTree::aDeepSharedBranchNeedsNoStack()
{
    int countBetween = 0;
    runOnSmallStack([&] {
        QVariant branch = nested("LM", Deep, counted());
        QVariant first = nested("ML", Deep, branch);
        QVariant second = nested("L", Deep, branch);
        VariantTree::dispose(branch);
        VariantTree::dispose(first);
        countBetween = Counted::count;
        VariantTree::dispose(second);
    });

    QCOMPARE(countBetween, 1);
    QCOMPARE(Counted::count, 0);
}

void tst_VariantTree::aDisposerActsAtTheEndOfItsBlock()
{
    QVariant tree = listAround(counted());
    {
        const VariantTree::Disposer disposer(tree);
        QCOMPARE(Counted::count, 1);
    }

    QVERIFY(!tree.isValid());
    QCOMPARE(Counted::count, 0);
}

void tst_VariantTree::aDisposerActsWhenTheBlockThrows()
{
    QVariant tree = listAround(counted());
    try {
        const VariantTree::Disposer disposer(tree);
        throw std::runtime_error("out of the block");
    } catch (const std::runtime_error &) {
        QVERIFY(!tree.isValid());
    }

    QCOMPARE(Counted::count, 0);
}

NUV_TEST_MAIN(tst_VariantTree)

#include "tst_varianttree.moc"
