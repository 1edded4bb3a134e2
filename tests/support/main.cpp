// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestEnvironment.h"

#include <QByteArray>
#include <gtest/gtest.h>
#ifdef TOLVANE_TEST_WIDGETS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QCoreApplication>
using TestApplication = QCoreApplication;
#endif

namespace {

// Each test starts in a home of its own, also when several run in one process.
class FreshHomeForEachTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { TestEnvironment::setUp(); }
    void OnTestProgramEnd(const testing::UnitTest&) override { TestEnvironment::tearDown(); }
};

}

int main(int argc, char** argv)
{
#ifdef TOLVANE_TEST_WIDGETS
    // Test discovery runs the program without the tests' environment.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    // A death test's child process shares its parent's home, so that the parent can look at what
    // the child left there.
    bool deathTestChild = false;
    for (int i = 1; i < argc; ++i)
        deathTestChild |= QByteArray(argv[i]).startsWith("--gtest_internal_run_death_test");
    if (!deathTestChild)
        TestEnvironment::setUp();
    TestApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    if (!deathTestChild)
        testing::UnitTest::GetInstance()->listeners().Append(new FreshHomeForEachTest);
    return RUN_ALL_TESTS();
}
