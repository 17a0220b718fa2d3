// Any Form as a modal dialog.
#pragma once

#include <QButtonGroup>
#include <QDialog>
#include <QGridLayout>
#include <QLabel>
#include <QTimer>
#include <map>
#include <vector>

#include "platform/form.h"
#include "platform/window.h"

namespace hl {

/// Writes into the controls what the user does, calls what they have for it, and then shows all of them as
/// they are. It closes when the form's `loaded` turns false; a form without one is closed by a button or by
/// Esc. Makes itself as large as its texts need.
class FormDialog final : public QDialog {
  public:
    /// `form` outlives it.
    FormDialog(Form& form, WindowEvents& events, QWidget* parent);
    ~FormDialog() override;
    /// Returns when the form is closed.
    void run();

    void reject() override;

  protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Shown {
        const FormItem* item;
        QWidget* widget;
    };
    template <class Control>
    QWidget* make(Control& control, const FormItem& item);
    QWidget* makeLines(TextBox& box, const FormItem& item);
    void addItem(const FormItem& item);
    void addButtons();
    void nameByLabel(QWidget& widget, const FormItem& item);
    /// The user has changed a control: `write` puts that into it.
    template <class Write>
    void told(const FormItem& item, Write write);
    void selectOnly(OptionButton& option, int group);
    void refresh();
    void follow();
    bool isClosed() const { return form_.loaded != nullptr && !*form_.loaded; }

    Form& form_;
    WindowEvents& events_;
    QGridLayout* grid_;
    std::vector<Shown> shown_;
    std::map<int, QButtonGroup*> groups_;
    QLabel* lastLabel_ = nullptr;
    QTimer watch_;
    bool waiting_ = false;  ///< The hourglass is shown.
    bool refreshing_ = false;
    bool started_ = false;
};

}  // namespace hl
