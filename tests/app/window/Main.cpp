#include "tests/support/Settle.h"

#include <QApplication>

#include <gmock/gmock.h>

int main(int argc, char **argv) {
    // Neither a screen nor a graphics card is needed to see what the keys do.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND")) {
        qputenv("QT_QUICK_BACKEND", "software");
    }
    const QApplication app(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    const int outcome = RUN_ALL_TESTS();
    vorle::test::letDiskAnswer();
    return outcome;
}
