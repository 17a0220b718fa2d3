// Shows any Form as a modal dialog. For the window's thread.
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

/// Stores what the user does in the controls, calls their callbacks, and then shows all controls as they are.
/// It closes when the form's `loaded` becomes false; a form without that is closed by a button or by Esc. It
/// makes itself as large as its texts need.
class FormDialog final : public QDialog {
  public:
    /// `form` must outlive it.
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
    /// Must be called when the user has changed a control: `write` stores the change in it.
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
    bool waiting_ = false;  ///< The hourglass is visible.
    bool refreshing_ = false;
    bool started_ = false;
};

}  // namespace hl
