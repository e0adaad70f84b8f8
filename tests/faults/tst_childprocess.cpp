// SPDX-License-Identifier: MIT
#include "tests/faults/childprocess.h"
#include "tests/support/testmain.h"

#include <thread>

/// What the other tests of this folder rely on when they try something in a process of its own.
class tst_ChildProcess : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itsStatusOrItsSignalIsTold_data();
    void itsStatusOrItsSignalIsTold();
    void aLockOfAnotherThreadIsFreeInIt();
};

typedef int (*Work)();

Q_DECLARE_METATYPE(Work)

namespace {

int succeed()
{
    return 0;
}

int fail()
{
    return 7;
}

int crash()
{
    std::abort();
}

int hang()
{
    for (;;)
        ::pause();
}

} // namespace

void tst_ChildProcess::itsStatusOrItsSignalIsTold_data()
{
    QTest::addColumn<Work>("work");
    QTest::addColumn<unsigned int>("seconds");
    QTest::addColumn<int>("status");
    QTest::newRow("success") << Work(succeed) << 60U << 0;
    QTest::newRow("failure") << Work(fail) << 60U << 7;
    QTest::newRow("a crash") << Work(crash) << 60U << -SIGABRT;
    QTest::newRow("one that hangs is ended") << Work(hang) << 1U << -SIGALRM;
}

void tst_ChildProcess::itsStatusOrItsSignalIsTold()
{
    QFETCH(Work, work);
    QFETCH(unsigned int, seconds);
    QFETCH(int, status);
    QCOMPARE(ChildProcess(work, seconds).wait(), status);
}

// The other thread holds the toolkit's lock of the environment about half of the time, for a while after
// each byte.
void tst_ChildProcess::aLockOfAnotherThreadIsFreeInIt()
{
    int pipe[2];
    QCOMPARE(::pipe(pipe), 0);
    std::thread other([&] {
        char byte = 0;
        while (::read(pipe[0], &byte, 1) == 1) {
            for (int i = 0; i < 10000; ++i)
                qgetenv("PATH");
        }
    });
    const auto work = [] { return qgetenv("PATH").isEmpty() ? 1 : 0; };
    int failures = 0;
    for (int i = 0; i < 20; ++i) {
        failures += ::write(pipe[1], "", 1) == 1 ? 0 : 1;
        failures += ChildProcess(work, 10).wait() == 0 ? 0 : 1;
    }
    ::close(pipe[1]);
    other.join();
    ::close(pipe[0]);
    QCOMPARE(failures, 0);
}

NUV_TEST_MAIN(tst_ChildProcess)

#include "tst_childprocess.moc"
