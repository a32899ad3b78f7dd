#include "widgets/ControlWidget.h"

#include "appkit/Colors.h"
#include "appkit/ModalPanel.h"
#include "appkit/Pixels.h"
#include "base/RunLoop.h"
#include "widgets/FormLook.h"
#include "widgets/Paced.h"
#include "widgets/PickerBox.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QEvent>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QToolButton>
#include <QWheelEvent>

#include <cmath>

using namespace forms;

namespace {

QString text(const std::string& string)
{
    return QString::fromStdString(string);
}

/// Runs what the user sets off, as the delivery of work that it is.
template <class Action, class... Values>
void perform(const Action& action, Values... values)
{
    if (!action)
        return;
    const RunLoop::Turn turn;
    const Action kept = action; // It may be replaced by what it does.
    kept(values...);
}

/// A control of one kind: the kind's description is kept for when the user does something.
template <class Kind>
class ControlOf : public ControlWidget {
public:
    bool show(const Control& control) final
    {
        const Kind* kind = std::get_if<Kind>(&control);
        if (!kind)
            return false;
        control_ = *kind;
        refresh();
        return true;
    }

protected:
    explicit ControlOf(const Kind& kind)
        : control_(kind)
    {
        layout_ = new QHBoxLayout(this);
        layout_->setContentsMargins({});
        layout_->setSpacing(Pixels::from(8));
    }

    virtual void refresh() = 0;

    /// Symbols are painted in the theme's colours.
    void changeEvent(QEvent* event) final
    {
        if (event->type() == QEvent::PaletteChange)
            refresh();
        ControlWidget::changeEvent(event);
    }

    void setEditor(QWidget* editor)
    {
        editor_ = editor;
        editor->setFont(FormLook::font());
    }

    Kind control_;
    QHBoxLayout* layout_;
};

/// A label on the left, and on the right what it names.
template <class Kind>
class Labelled : public ControlOf<Kind> {
protected:
    explicit Labelled(const Kind& kind)
        : ControlOf<Kind>(kind)
        , label_(new StyledLabel(TextStyle::primary, this))
    {
        this->isWide_ = true;
        label_->setFont(FormLook::font());
        this->layout_->addWidget(label_, 1);
    }

    void addEditor(QWidget* editor)
    {
        this->layout_->addWidget(editor);
        this->setEditor(editor);
        label_->setBuddy(editor);
    }

    void refresh() override
    {
        label_->setText(text(this->control_.label));
        if (this->editor_)
            this->editor_->setAccessibleName(text(this->control_.label));
    }

    StyledLabel* label_;
};

class ToggleWidget final : public Labelled<Toggle> {
public:
    explicit ToggleWidget(const Toggle& toggle)
        : Labelled(toggle)
        , box_(new QCheckBox(this))
    {
        addEditor(box_);
        isWide_ = !toggle.hidesLabel;
        label_->setVisible(isWide_);
        label_->installEventFilter(this);
        connect(box_, &QCheckBox::clicked, this, [this](bool isOn) { perform(control_.set, isOn); });
    }

private:
    void refresh() override
    {
        Labelled::refresh();
        box_->setChecked(control_.isOn);
    }

    /// A click on its words is one on the box.
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::MouseButtonRelease && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton)
            box_->click();
        return false;
    }

    QCheckBox* box_;
};

class PickerWidget final : public Labelled<Picker> {
public:
    explicit PickerWidget(const Picker& picker)
        : Labelled(picker)
        , box_(new PickerBox(this))
    {
        addEditor(box_);
        for (const std::string& option : picker.options)
            box_->addItem(text(option));
        connect(box_, &QComboBox::activated, this,
            [this](int index) { perform(control_.set, static_cast<std::size_t>(index)); });
    }

private:
    void refresh() override
    {
        Labelled::refresh();
        box_->setEnabled(control_.isEnabled);
        box_->setCurrentIndex(static_cast<int>(control_.selection));
    }

    PickerBox* box_;
};

/// The wheel scrolls the form, as anywhere else in it.
class FormSlider final : public QSlider {
public:
    using QSlider::QSlider;

private:
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

class SliderWidget final : public Labelled<Slider> {
public:
    explicit SliderWidget(const Slider& slider)
        : Labelled(slider)
        , slider_(new FormSlider(Qt::Horizontal, this))
        , value_(new StyledLabel(TextStyle::primary, this))
    {
        addEditor(slider_);
        slider_->setRange(steps(slider.lowest), steps(slider.highest));
        slider_->setPageStep(10);
        slider_->setFixedWidth(Pixels::from(slider.width));
        slider_->setFocusPolicy(Qt::StrongFocus);
        value_->setFont(FormLook::font());
        value_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        value_->setMinimumWidth(Pixels::from(slider.valueTextWidth));
        layout_->addWidget(value_);
        connect(slider_, &QSlider::valueChanged, this, [this](int value) {
            const RunLoop::Turn turn;
            paced_.tell(value / stepsOfOne, control_.set);
        });
        connect(slider_, &QSlider::sliderReleased, this, [this] {
            const RunLoop::Turn turn;
            paced_.flush();
        });
    }

private:
    static constexpr double stepsOfOne = 100;

    static int steps(double value) { return static_cast<int>(std::lround(value * stepsOfOne)); }

    /// One that is being dragged stays under the pointer.
    void refresh() override
    {
        Labelled::refresh();
        value_->setText(text(control_.valueText));
        const QSignalBlocker silently(slider_);
        if (!slider_->isSliderDown() && !paced_.isWaiting())
            slider_->setValue(steps(control_.value));
    }

    FormSlider* slider_;
    StyledLabel* value_;
    Paced<double> paced_;
};

class ColorPickerWidget final : public Labelled<ColorPicker> {
public:
    explicit ColorPickerWidget(const ColorPicker& picker)
        : Labelled(picker)
        , button_(new QPushButton(this))
    {
        addEditor(button_);
        button_->setIconSize({ Pixels::from(36), Pixels::from(16) });
        connect(button_, &QPushButton::clicked, this, [this] { choose(); });
    }

private:
    void refresh() override
    {
        Labelled::refresh();
        QPixmap swatch(button_->iconSize());
        swatch.fill(Qt::transparent);
        QPainter painter(&swatch);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(FormLook::color(palette(), TextStyle::tertiary));
        painter.setBrush(toolkitColor(control_.value));
        painter.drawRoundedRect(QRectF(swatch.rect()).adjusted(0.5, 0.5, -0.5, -0.5), Pixels::from(3), Pixels::from(3));
        painter.end();
        button_->setIcon(swatch);
    }

    /// The bar shows the choice while it is being made; canceled, it has the old colour again.
    void choose()
    {
        if (dialog_) {
            ModalPanel::bringForward(*dialog_);
            return;
        }
        const NSColor before = control_.value;
        dialog_ = new QColorDialog(toolkitColor(before), ModalPanel::owner());
        dialog_->setOption(QColorDialog::DontUseNativeDialog);
        dialog_->setWindowTitle(text(control_.label));
        connect(dialog_, &QColorDialog::currentColorChanged, this, [this](const QColor& color) {
            const RunLoop::Turn turn;
            paced_.tell(NSColor::colorWithSRGBRed(color.redF(), color.greenF(), color.blueF(), 1), control_.set);
        });
        ModalPanel::show(*dialog_, [self = QPointer(this), dialog = dialog_, before] {
            if (!self)
                return;
            self->paced_.flush();
            if (dialog->result() == QDialog::Rejected)
                perform(self->control_.set, before);
        });
    }

    QPushButton* button_;
    QPointer<QColorDialog> dialog_;
    Paced<NSColor> paced_;
};

class ButtonWidget final : public ControlOf<Button> {
public:
    explicit ButtonWidget(const Button& button)
        : ControlOf(button)
    {
        if (button.symbol.empty())
            button_ = new QPushButton(this);
        else
            button_ = new QToolButton(this);
        setEditor(button_);
        button_->setFocusPolicy(Qt::StrongFocus);
        layout_->addWidget(button_);
        connect(button_, &QAbstractButton::clicked, this, [this] { perform(control_.action); });
    }

private:
    void refresh() override
    {
        button_->setAccessibleName(text(control_.title));
        button_->setEnabled(control_.isEnabled);
        if (control_.symbol.empty()) {
            button_->setText(text(control_.title));
            return;
        }
        button_->setToolTip(text(control_.title));
        button_->setIcon(FormLook::symbolIcon(control_.symbol, button_->iconSize().width(), palette()));
    }

    QAbstractButton* button_;
};

class ContentWidget final : public Labelled<LabeledContent> {
public:
    explicit ContentWidget(const LabeledContent& content)
        : Labelled(content)
        , content_(new StyledLabel(TextStyle::secondary, this))
    {
        content_->setFont(FormLook::font()); // The digits of an ordinary font are all of one width.
        layout_->addWidget(content_);
    }

private:
    void refresh() override
    {
        Labelled::refresh();
        content_->setText(text(control_.content));
        content_->setAccessibleName(text(control_.label + ", " + control_.content));
    }

    StyledLabel* content_;
};

class LabelWidget final : public ControlOf<Label> {
public:
    explicit LabelWidget(const Label& label)
        : ControlOf(label)
        , symbol_(new QLabel(this))
        , label_(new StyledLabel(label.style, this))
    {
        isWide_ = true;
        label_->setFont(FormLook::font(label.isSmall ? FormLook::footerSize : 13));
        label_->setWordWrap(label.isSmall || !label.symbol.empty());
        layout_->addWidget(symbol_);
        layout_->addWidget(label_, 1);
    }

private:
    void refresh() override
    {
        label_->setStyle(control_.style);
        label_->setText(text(control_.text));
        symbol_->setVisible(!control_.symbol.empty());
        if (!control_.symbol.empty())
            symbol_->setPixmap(
                FormLook::symbol(control_.symbol, Pixels::from(16), FormLook::color(palette(), control_.style)));
    }

    QLabel* symbol_;
    StyledLabel* label_;
};

class SymbolWidget final : public ControlOf<Symbol> {
public:
    explicit SymbolWidget(const Symbol& symbol)
        : ControlOf(symbol)
        , picture_(new QLabel(this))
    {
        layout_->addWidget(picture_);
    }

private:
    void refresh() override
    {
        picture_->setPixmap(
            FormLook::symbol(control_.name, Pixels::from(16), FormLook::color(palette(), control_.style)));
        picture_->setToolTip(text(control_.toolTip));
        picture_->setAccessibleName(text(control_.toolTip));
    }

    QLabel* picture_;
};

// One for each kind of control.

ControlWidget* made(const Toggle& control)
{
    return new ToggleWidget(control);
}
ControlWidget* made(const Picker& control)
{
    return new PickerWidget(control);
}
ControlWidget* made(const Slider& control)
{
    return new SliderWidget(control);
}
ControlWidget* made(const ColorPicker& control)
{
    return new ColorPickerWidget(control);
}
ControlWidget* made(const Button& control)
{
    return new ButtonWidget(control);
}
ControlWidget* made(const LabeledContent& control)
{
    return new ContentWidget(control);
}
ControlWidget* made(const Label& control)
{
    return new LabelWidget(control);
}
ControlWidget* made(const Symbol& control)
{
    return new SymbolWidget(control);
}

}

ControlWidget* ControlWidget::make(const Control& control)
{
    ControlWidget* widget = std::visit([](const auto& kind) { return made(kind); }, control);
    widget->show(control);
    return widget;
}

void ControlWidget::setHelp(const QString& help)
{
    if (editor_)
        editor_->setAccessibleDescription(help);
}
