#include <gmock/gmock.h>

#include <QGuiApplication>

/// Letters need an application with fonts; no window is opened, so no screen is needed.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ::testing::InitGoogleMock(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
