#pragma once

#include "forms/Form.h"

#include <QFont>
#include <QIcon>
#include <QLabel>
#include <QPalette>

/// Fonts, colours and symbols of forms: those of the user's toolkit, at the desktop's scale.
namespace FormLook {

/// The toolkit's own font, `size` thirteenths as large.
QFont font(double size = 13, QFont::Weight weight = QFont::Normal);
/// What text of that style has on that palette.
QColor color(const QPalette& palette, forms::TextStyle style);
/// A symbol in the colour of the text that it stands with. Null when there is none of the name.
QPixmap symbol(const std::string& name, int pixels, const QColor& color);
QIcon symbolIcon(const std::string& name, int pixels, const QPalette& palette);

constexpr double footerSize = 11;

}

/// A text that keeps to its style when the theme changes.
class StyledLabel : public QLabel {
public:
    explicit StyledLabel(forms::TextStyle style = forms::TextStyle::primary, QWidget* parent = nullptr);

    void setStyle(forms::TextStyle style);
    forms::TextStyle style() const { return style_; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void color();

    forms::TextStyle style_;
    bool isColoring_ = false;
};
