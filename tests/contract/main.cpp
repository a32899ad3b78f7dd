#include <QApplication>
#include <gtest/gtest.h>

#include <cstdlib>

/// Panels need the toolkit. Without an X server to show them on, they are drawn in memory.
int main(int argc, char** argv)
{
    if (!std::getenv("DISPLAY"))
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
