// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include <QCoreApplication>

#include <gmock/gmock.h>
#include <log4cplus/initializer.h>

/// Test programs run with an application object, which Qt's threads and timers expect, and with
/// logging initialised.
int main(int argc, char **argv)
{
    testing::InitGoogleMock(&argc, argv);
    // log4cplus has threads of its own, which a plain fork would leave behind.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    log4cplus::Initializer logging;
    QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
