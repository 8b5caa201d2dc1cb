#include <QCoreApplication>
#include <QTimeZone>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Qt's SQL drivers want an application object; the tests need no event loop of their own.
    QCoreApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
