// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestEnvironment.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace {

// Each test starts in a home of its own, also when several run in one process.
class FreshHomeForEachTest : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { TestEnvironment::setUp(); }
    void OnTestProgramEnd(const testing::UnitTest&) override { TestEnvironment::tearDown(); }
};

}

int main(int argc, char** argv)
{
    TestEnvironment::setUp();
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new FreshHomeForEachTest);
    return RUN_ALL_TESTS();
}
