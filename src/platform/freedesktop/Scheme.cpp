#include "freedesktop/Scheme.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

namespace freedesktop::Scheme {
namespace {

QPalette darkPalette()
{
    QPalette palette(QColor(0x40, 0x43, 0x49), QColor(0x29, 0x2B, 0x2F));
    palette.setColor(QPalette::Base, QColor(0x1E, 0x20, 0x23));
    palette.setColor(QPalette::AlternateBase, QColor(0x23, 0x25, 0x29));
    palette.setColor(QPalette::ToolTipBase, QColor(0x40, 0x43, 0x49));
    palette.setColor(QPalette::Link, QColor(0x7A, 0xB0, 0xFF));
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText })
        palette.setColor(role, QColor(0xF0, 0xF1, 0xF3));
    for (const auto role : { QPalette::WindowText, QPalette::Text, QPalette::ButtonText })
        palette.setColor(QPalette::Disabled, role, QColor(0x86, 0x89, 0x90));
    const QPalette born = QApplication::style()->standardPalette();
    for (const auto role : { QPalette::Highlight, QPalette::HighlightedText })
        palette.setColor(role, born.color(QPalette::Active, role));
    return palette;
}

/// Whether what is selected is marked as the toolkit does by itself; a theme does it in its own way.
bool hasNoTheme()
{
    return QApplication::palette().color(QPalette::Highlight)
        == QApplication::style()->standardPalette().color(QPalette::Highlight);
}

}

void follow(bool isDark)
{
    if (qApp && hasNoTheme())
        QApplication::setPalette(isDark ? darkPalette() : QApplication::style()->standardPalette());
}

}
