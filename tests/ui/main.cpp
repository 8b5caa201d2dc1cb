#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // The dialogs are driven by the tests themselves, never by a person: without a display
    // named explicitly they are drawn off screen (test discovery at build time included).
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
