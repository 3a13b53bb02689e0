#include "tests/support/Settle.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    const int outcome = RUN_ALL_TESTS();
    vorle::test::letDiskAnswer();
    return outcome;
}
