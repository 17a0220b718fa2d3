#include "platform/qt/forms/form_dialog.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QVBoxLayout>
#include <QtMath>
#include <algorithm>

#include "base/scope_exit.h"
#include "platform/qt/common/qt_convert.h"
#include "platform/qt/common/qt_guard.h"
#include "platform/qt/forms/form_table.h"

namespace hl {

namespace {

constexpr QtGuard kFormDialogGuard{"FormDialog"};
constexpr QtGuard kEditGuard{"FilteredEdit"};

/// How often `loaded` and `hourglass` are checked while a routine of the form lets messages run.
constexpr int kWatchMilliseconds = 50;
constexpr int kWrapCharacters = 70;
constexpr int kLinesWidth = 60, kLinesHeight = 12, kTextWidth = 32;  ///< In characters and lines.
constexpr int kFewestLines = 3;                                      ///< On a screen with little room.

/// An edit box that passes what is typed through the form's filter.
class FilteredEdit final : public QLineEdit {
  public:
    FilteredEdit(const FormItem& item, WindowEvents& events) : item_(item), events_(events) {}

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        kEditGuard(events_, [&] {
            const auto typed = event->text().toUcs4();
            const bool command = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0;
            if (!item_.keyPress || typed.size() != 1 || typed[0] < U' ' || typed[0] == 127 || command)
                return QLineEdit::keyPressEvent(event);
            const char32_t taken = item_.keyPress(typed[0]);
            if (taken != 0) insert(typed[0] == taken ? event->text() : QString::fromUcs4(&taken, 1));
            if (taken != 0) emit textEdited(text());
        });
    }

  private:
    const FormItem& item_;
    WindowEvents& events_;
};

/// A text that would like to have a number of lines, but works with few.
class LinesEdit final : public QPlainTextEdit {
  public:
    LinesEdit(int lines, QWidget* parent) : QPlainTextEdit(parent), lines_(lines) {
        setTabChangesFocus(true);
        setMinimumSize(sizeOf(std::min(lines, kFewestLines)));
    }
    QSize sizeHint() const override { return sizeOf(lines_); }

  private:
    QSize sizeOf(int lines) const {
        const QFontMetrics metrics = fontMetrics();
        const int around = 2 * (frameWidth() + qCeil(document()->documentMargin()));
        return {metrics.averageCharWidth() * kLinesWidth, metrics.lineSpacing() * lines + around};
    }

    const int lines_;
};

template <class Widget>
void showState(Widget& widget, const QString& caption, bool checked, bool enabled) {
    widget.setText(caption);
    widget.setChecked(checked);
    widget.setEnabled(enabled);
}

void showControl(QWidget& widget, const std::string* text, const FormItem& item) {
    auto& label = dynamic_cast<QLabel&>(widget);
    const QString shown = qtText(*text);
    label.setText(
        item.changed ? QStringLiteral("<a href=\"#\">%1</a>").arg(shown.toHtmlEscaped().replace('\n', "<br>"))
                     : shown);
    label.setWordWrap(shown.size() > kWrapCharacters);
    if (!label.wordWrap()) return;
    const int narrowest = label.fontMetrics().averageCharWidth() * kWrapCharacters;
    label.setMinimumSize(narrowest, label.heightForWidth(narrowest));
}

void showControl(QWidget& widget, const OptionButton* option, const FormItem&) {
    showState(dynamic_cast<QRadioButton&>(widget), captionText(option->caption), option->selected,
              option->enabled);
}

void showControl(QWidget& widget, const CheckBox* box, const FormItem&) {
    showState(dynamic_cast<QCheckBox&>(widget), captionText(box->caption), box->checked, box->enabled);
}

void showControl(QWidget& widget, const TextBox* box, const FormItem&) {
    const QString text = qtText(box->text).remove(QLatin1Char('\r'));
    widget.setEnabled(box->enabled);
    if (auto* lines = dynamic_cast<QPlainTextEdit*>(&widget)) {
        if (lines->toPlainText() != text) lines->setPlainText(text);
        lines->setReadOnly(box->readOnly);
    } else if (auto* line = dynamic_cast<QLineEdit*>(&widget)) {
        if (line->text() != text) line->setText(text);
        line->setReadOnly(box->readOnly);
    }
}

void showControl(QWidget& widget, const ComboBox* box, const FormItem&) {
    auto& combo = dynamic_cast<QComboBox&>(widget);
    QStringList items;
    for (const std::string& item : box->items) items.push_back(qtText(item));
    QStringList present;
    for (int i = 0; i < combo.count(); ++i) present.push_back(combo.itemText(i));
    if (present != items) {
        combo.clear();
        combo.addItems(items);
    }
    combo.setCurrentIndex(box->index);
    combo.setEnabled(box->enabled);
}

void showControl(QWidget& widget, const CommandButton* button, const FormItem&) {
    auto& push = dynamic_cast<QPushButton&>(widget);
    push.setText(qtText(button->caption));  // A "&" marks the key.
    push.setEnabled(button->enabled);
}

void showControl(QWidget& widget, const TableBox* table, const FormItem&) {
    dynamic_cast<FormTable&>(widget).show(*table);
}

}  // namespace

FormDialog::FormDialog(Form& form, WindowEvents& events, QWidget* parent)
    : QDialog(parent), form_(form), events_(events), grid_(new QGridLayout) {
    setObjectName(qtText(form.name));
    setWindowTitle(qtText(form.caption));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowFlag(Qt::WindowStaysOnTopHint, form.onTop);
    auto* rows = new QVBoxLayout(this);
    auto* beside = new QHBoxLayout;
    rows->addLayout(beside);
    if (form.warning) {
        auto* mark = new QLabel;
        const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
        mark->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(side));
        beside->addWidget(mark, 0, Qt::AlignTop);
    }
    beside->addLayout(grid_, 1);
    for (const FormItem& item : form.items) addItem(item);
    addButtons();
    const auto grows = [](const Shown& each) {
        return dynamic_cast<QPlainTextEdit*>(each.widget) != nullptr ||
               dynamic_cast<FormTable*>(each.widget) != nullptr;
    };
    if (std::none_of(shown_.begin(), shown_.end(), grows)) rows->setSizeConstraint(QLayout::SetFixedSize);
    refresh();
    form_.redraw = [this] { refresh(); };
    connect(&watch_, &QTimer::timeout, this,
            [this] { kFormDialogGuard(events_, "watch", [this] { follow(); }); });
    watch_.start(kWatchMilliseconds);
}

FormDialog::~FormDialog() {
    form_.redraw = nullptr;
    if (waiting_) QApplication::restoreOverrideCursor();
}

// --- building

template <class Write>
void FormDialog::told(const FormItem& item, Write write) {
    if (refreshing_) return;
    kFormDialogGuard(events_, "changed", [&] {
        write();
        if (item.changed) item.changed();
        refresh();
        follow();
    });
}

void FormDialog::selectOnly(OptionButton& option, int group) {
    for (const FormItem& other : form_.items) {
        auto* const* button = std::get_if<OptionButton*>(&other.control);
        if (button != nullptr && other.group == group) (*button)->selected = *button == &option;
    }
}

template <>
QWidget* FormDialog::make(OptionButton& control, const FormItem& item) {
    auto* radio = new QRadioButton(this);
    auto& group = groups_[item.group];
    if (group == nullptr) group = new QButtonGroup(this);
    group->addButton(radio);
    connect(radio, &QRadioButton::clicked, this,
            [&, this] { told(item, [&] { selectOnly(control, item.group); }); });
    return radio;
}

template <>
QWidget* FormDialog::make(CheckBox& control, const FormItem& item) {
    auto* box = new QCheckBox(this);
    connect(box, &QCheckBox::clicked, this,
            [&, this](bool on) { told(item, [&] { control.checked = on; }); });
    return box;
}

QWidget* FormDialog::makeLines(TextBox& control, const FormItem& item) {
    const int height = control.lines > 0 ? control.lines : kLinesHeight;
    auto* lines = new LinesEdit(height, this);
    grid_->setRowStretch(item.row, height);
    connect(lines, &QPlainTextEdit::textChanged, this, [&, lines, this] {
        if (!control.readOnly) told(item, [&] { control.text = utf8(lines->toPlainText()); });
    });
    return lines;
}

template <>
QWidget* FormDialog::make(TextBox& control, const FormItem& item) {
    if (control.multiLine) return makeLines(control, item);
    auto* line = new FilteredEdit(item, events_);
    line->setMinimumWidth(line->fontMetrics().averageCharWidth() * kTextWidth);
    connect(line, &QLineEdit::textEdited, this,
            [&, this](const QString& text) { told(item, [&] { control.text = utf8(text); }); });
    return line;
}

template <>
QWidget* FormDialog::make(ComboBox& control, const FormItem& item) {
    auto* combo = new QComboBox(this);
    connect(combo, &QComboBox::activated, this,
            [&, this](int index) { told(item, [&] { control.index = index; }); });
    return combo;
}

template <>
QWidget* FormDialog::make(CommandButton&, const FormItem& item) {
    auto* button = new QPushButton(this);
    connect(button, &QPushButton::clicked, this, [&, this] {
        told(item, [] {});
        if (form_.loaded == nullptr && !form_.buttons.empty()) accept();
    });
    return button;
}

template <>
QWidget* FormDialog::make(TableBox& control, const FormItem& item) {
    grid_->setRowStretch(item.row, kLinesHeight);
    return new FormTable(
        events_, [&, this](int line) { told(item, [&] { control.activated = line; }); }, this);
}

template <>
QWidget* FormDialog::make(std::string&, const FormItem& item) {
    auto* label = new QLabel(this);
    label->setTextFormat(item.changed ? Qt::RichText : Qt::PlainText);
    if (item.changed) {
        label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
        label->setFocusPolicy(Qt::StrongFocus);
        connect(label, &QLabel::linkActivated, this, [&, this] { told(item, [] {}); });
    }
    return label;
}

void FormDialog::nameByLabel(QWidget& widget, const FormItem& item) {
    const bool captioned = std::holds_alternative<std::string*>(item.control) ||
                           std::holds_alternative<OptionButton*>(item.control) ||
                           std::holds_alternative<CheckBox*>(item.control) ||
                           std::holds_alternative<CommandButton*>(item.control);
    if (!item.name.empty()) widget.setAccessibleName(qtText(item.name));
    if (!captioned && item.name.empty() && lastLabel_ != nullptr)
        widget.setAccessibleName(lastLabel_->text());
    auto* label = item.changed ? nullptr : dynamic_cast<QLabel*>(&widget);
    lastLabel_ = label;
}

void FormDialog::addItem(const FormItem& item) {
    QWidget* widget = std::visit([&](auto* control) { return make(*control, item); }, item.control);
    widget->setToolTip(qtText(item.tooltip));
    widget->installEventFilter(this);
    shown_.push_back({&item, widget});
    grid_->addWidget(widget, item.row, item.column, 1, item.columnSpan);
    std::visit([&](auto* control) { showControl(*widget, control, item); }, item.control);
    nameByLabel(*widget, item);
}

void FormDialog::addButtons() {
    auto* line = new QHBoxLayout;
    line->addStretch(1);
    for (const FormItem& item : form_.buttons) {
        QWidget* widget = std::visit([&](auto* control) { return make(*control, item); }, item.control);
        widget->setToolTip(qtText(item.tooltip));
        widget->installEventFilter(this);
        auto* button = dynamic_cast<QPushButton*>(widget);
        if (button != nullptr && &item == &form_.buttons.front()) button->setDefault(true);
        line->addWidget(widget);
        shown_.push_back({&item, widget});
    }
    static_cast<QVBoxLayout*>(layout())->addLayout(line);
}

// --- following the form

void FormDialog::refresh() {
    if (refreshing_) return;
    refreshing_ = true;
    const ScopeExit done([this] { refreshing_ = false; });
    for (const auto& [item, widget] : shown_) {
        const bool focused = widget->hasFocus();
        std::visit([&, w = widget, i = item](auto* control) { showControl(*w, control, *i); }, item->control);
        if (focused && !widget->isEnabled()) focusNextChild();
    }
}

void FormDialog::follow() {
    const bool wait = form_.hourglass != nullptr && *form_.hourglass && !isClosed();
    if (wait != std::exchange(waiting_, wait)) {
        if (wait) {
            QApplication::setOverrideCursor(Qt::WaitCursor);
        } else {
            QApplication::restoreOverrideCursor();
        }
    }
    if (form_.polled && !isClosed() && isVisible() && form_.polled()) refresh();
    if (form_.title != nullptr) setWindowTitle(qtText(*form_.title));
    if (isClosed() && isVisible()) QDialog::reject();
}

void FormDialog::run() {
    if (!isClosed()) exec();
}

void FormDialog::reject() {
    kFormDialogGuard(events_, [this] {
        if (form_.cancel) form_.cancel();
        refresh();
        if (form_.loaded == nullptr || isClosed()) QDialog::reject();
    });
}

void FormDialog::showEvent(QShowEvent* event) {
    kFormDialogGuard(events_, [&] {
        QDialog::showEvent(event);
        if (std::exchange(started_, true)) return;
        if (form_.activated) form_.activated();
        refresh();
        QMetaObject::invokeMethod(
            this, [this] { kFormDialogGuard(events_, "follow", [this] { follow(); }); },
            Qt::QueuedConnection);
    });
}

bool FormDialog::eventFilter(QObject* watched, QEvent* event) {
    return kFormDialogGuard(events_, [&] {
        const bool comes = event->type() == QEvent::Enter || event->type() == QEvent::FocusIn;
        if (!comes) return QDialog::eventFilter(watched, event);
        for (const auto& [item, widget] : shown_)
            if (widget == watched && item->hovered) {
                item->hovered();
                refresh();
            }
        return QDialog::eventFilter(watched, event);
    });
}

}  // namespace hl
