// SPDX-License-Identifier: MIT
#include "json/jsonwriter.h"
#include "tests/support/testmain.h"

#include <QVariant>

#include <new>

namespace {

// What only gigabytes of memory can show is tried with NUV_GIGABYTES=1: up to 2.2 GB.
bool hasGigabytes()
{
    return !qgetenv("NUV_GIGABYTES").isEmpty();
}

// The size of a list of strings as it is written, -1 when no byte array holds that.
int writtenSize(const QVariantList &texts)
{
    try {
        return JsonWriter::serializeCompact(texts).size();
    } catch (const std::bad_alloc &) {
        return -1;
    }
}

} // namespace

/// Documents that are larger than an array of the toolkit.
class tst_SizeLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsEndAtTheLargestByteArray_data();
    void textsEndAtTheLargestByteArray();
};

void tst_SizeLimits::textsEndAtTheLargestByteArray_data()
{
    QTest::addColumn<int>("mebibytes");
    QTest::addColumn<int>("size");
    QTest::newRow("3 MiB") << 3 << 3145738;
    if (!hasGigabytes())
        return;
    QTest::newRow("1 MiB less than 2 GiB") << 2047 << 2146441214;
    QTest::newRow("2 GiB") << 2048 << -1;
}

void tst_SizeLimits::textsEndAtTheLargestByteArray()
{
    QFETCH(int, mebibytes);
    QFETCH(int, size);
    const QString mebibyte(1 << 20, QLatin1Char('x'));
    QVariantList texts;
    for (int i = 0; i < mebibytes; ++i)
        texts.append(mebibyte);

    QCOMPARE(writtenSize(texts), size);
}

NUV_TEST_MAIN(tst_SizeLimits)

#include "tst_sizelimits.moc"
