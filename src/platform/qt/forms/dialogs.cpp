#include "platform/qt/forms/dialogs.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QFontDatabase>
#include <QFontDialog>
#include <QGuiApplication>
#include <QInputDialog>
#include <QMessageBox>
#include <QMimeDatabase>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <filesystem>
#include <memory>
#include <utility>

#include "base/text.h"
#include "platform/qt/common/qt_convert.h"

namespace hl {

namespace {

QMessageBox::Icon iconOf(MessageKind kind) {
    switch (kind) {
        case MessageKind::kInformation:
            return QMessageBox::Information;
        case MessageKind::kWarning:
            return QMessageBox::Warning;
        case MessageKind::kError:
            return QMessageBox::Critical;
        case MessageKind::kQuestion:
            return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

/// Returns the nearest folder at or above `path` that exists and that Qt can name, or the user's home.
std::string nameableFolder(std::string path) {
    while (path.size() > 1) {
        if (decodable(path) == path && QFileInfo(qtText(path)).isDir()) return path;
        path.resize(std::max<std::size_t>(path.rfind('/') == std::string::npos ? 0 : path.rfind('/'), 1));
    }
    return path == "/" ? path : utf8(QDir::homePath());
}

/// The line breaks of a message are the program's own.
QString shownLines(const std::string& text) {
    return shownName(replaceAll(text, "\r\n", "\n")).replace(QChar(0x240A), QLatin1Char('\n'));
}

/// Returns "TXT (*.txt)" without the part in brackets.
QString withoutPattern(const QString& text) {
    return text.section(QLatin1Char('('), 0, 0).trimmed();
}

/// Chooses icons by the names of files, because the toolkit opens files to choose, and waits forever for some
/// in /proc.
class NameIcons final : public QFileIconProvider {
  public:
    QIcon icon(const QFileInfo& info) const override {
        return QFileIconProvider::icon(info.isDir() ? Folder : File);
    }
    QString type(const QFileInfo& info) const override {
        return QMimeDatabase().mimeTypeForFile(info, QMimeDatabase::MatchExtension).comment();
    }
};

struct FileQuestion {
    FileQuestion(QWidget* parent, const QString& title, const std::string& start) : dialog(parent, title) {
        dialog.setIconProvider(&icons);
        dialog.setOption(QFileDialog::DontUseNativeDialog);
        dialog.setDirectory(qtText(nameableFolder(start)));
    }
    NameIcons icons;
    QFileDialog dialog;
};

/// Makes one of the toolkit's own dialogs no larger than the screen allows.
void fitToScreen(QDialog& dialog) {
    constexpr int kFrame = 32;  // In pixels, for the title bar and the edges.
    const QSize room = dialog.screen()->availableSize() - QSize(kFrame, kFrame);
    dialog.resize(dialog.sizeHint().boundedTo(room));
}

/// Returns the first name chosen, as bytes; empty if the dialog was cancelled.
std::string chosenIn(QFileDialog& dialog) {
    dropPictures(dialog);
    fitToScreen(dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return QFile::encodeName(dialog.selectedFiles().first()).toStdString();
}

// --- while a disk does not answer

/// Returns which disk does not answer; empty if all do.
std::string noticeOfSilence(const DialogTexts& texts) {
    const std::string place = texts.patience != nullptr ? texts.patience->silentDisk() : std::string();
    return place.empty() ? place : visible(place) + ": " + utf8(texts.silent) + "\n\n";
}

// A dialog that is destroyed waits for its thread, which looks at disks; if one of them has fallen silent
// meanwhile, the dialog stays for good.
std::string answerOf(std::unique_ptr<FileQuestion> question, const DialogTexts& texts) {
    std::string chosen = chosenIn(question->dialog);
    if (noticeOfSilence(texts).empty()) return chosen;
    question->dialog.setParent(nullptr);
    static_cast<void>(question.release());
    return chosen;
}

std::string absoluteFrom(const std::string& folder, const std::string& path) {
    if (path.empty() || path.starts_with('/')) return path;
    if (path.starts_with("~/")) return utf8(QDir::homePath()) + path.substr(1);
    return folder + (folder.ends_with('/') ? "" : "/") + path;
}

std::string withExtension(const std::string& path, const std::string& extension) {
    const bool hasOne = path.find('.', path.rfind('/') + 1) != std::string::npos;
    return hasOne || extension.empty() ? path : path + "." + extension;
}

bool mayReplace(QWidget* parent, const DialogTexts& texts, const std::string& path) {
    const bool exists = ask<bool>(texts.patience, path, false, [path] {
        std::error_code unknown;
        return std::filesystem::exists(path, unknown);
    });
    if (!exists) return true;
    const QString question = QFileDialog::tr("%1 already exists.\nDo you want to replace it?");
    return showMessage(parent, texts, MessageKind::kQuestion,
                       replaceAll(utf8(question), "%1", visible(path)));
}

std::string askForTypedTarget(QWidget* parent, const DialogTexts& texts, const std::string& notice,
                              const std::string& extension, const std::string& folder,
                              const std::string& name) {
    std::string typed = folder;
    if (!typed.ends_with('/')) typed += '/';
    typed += name;
    while (true) {
        typed = askForText(parent, texts, notice, typed);
        if (typed.empty()) return {};
        typed = absoluteFrom(folder, typed);
        if (typed.ends_with('/')) continue;  // No name.
        std::string path = withExtension(typed, extension);
        if (mayReplace(parent, texts, path)) return path;
    }
}

}  // namespace

void dropPictures(const QDialog& dialog) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) button->setIcon(QIcon());
}

QString qtFilter(const std::string& filter) {
    const QStringList parts = qtText(filter).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString patterns = parts[i + 1].simplified().replace(QLatin1Char(';'), QLatin1Char(' '));
        filters.push_back(QStringLiteral("%1 (%2)").arg(withoutPattern(parts[i]), patterns));
    }
    return filters.join(QStringLiteral(";;"));
}

bool showMessage(QWidget* parent, const DialogTexts& texts, MessageKind kind, const std::string& text) {
    QMessageBox box(iconOf(kind), texts.name, shownLines(text), QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    const bool question = kind == MessageKind::kQuestion;
    auto* yes = box.addButton(question ? texts.yes : texts.ok,
                              question ? QMessageBox::YesRole : QMessageBox::AcceptRole);
    // Most questions are about something that cannot be undone, so Return alone does nothing.
    QPushButton* no = question ? box.addButton(texts.no, QMessageBox::NoRole) : nullptr;
    if (question) box.setEscapeButton(no);
    box.setDefaultButton(question ? no : yes);
    dropPictures(box);
    box.exec();
    return box.clickedButton() == yes || !question;
}

// The text below is there from the start, so that the box has its size.
bool askToConfirm(QWidget* parent, const DialogTexts& texts, const Confirmation& what,
                  const std::function<std::string()>& live) {
    constexpr int kBetweenTexts = 100;  // Milliseconds.
    QMessageBox box(QMessageBox::Warning, texts.name, shownLines(what.text), QMessageBox::NoButton, parent);
    box.setTextFormat(Qt::PlainText);
    QTimer timer;
    const auto showLive = [&] {
        const QString text = shownLines(live());
        if (box.informativeText() != text) box.setInformativeText(text);
    };
    if (live) {
        showLive();
        QObject::connect(&timer, &QTimer::timeout, &box, showLive);
        timer.start(kBetweenTexts);
    }
    const auto* yes = box.addButton(qtText(what.action), QMessageBox::AcceptRole);
    auto* no = box.addButton(texts.cancel, QMessageBox::RejectRole);
    box.setEscapeButton(no);
    box.setDefaultButton(no);
    dropPictures(box);
    box.exec();
    return box.clickedButton() == yes;
}

std::string askForText(QWidget* parent, const DialogTexts& texts, const std::string& prompt,
                       const std::string& preset) {
    QInputDialog dialog(parent);
    dialog.setWindowTitle(texts.name);
    dialog.setLabelText(qtText(prompt));
    dialog.setTextValue(qtText(preset));
    dialog.setOkButtonText(texts.ok);
    dialog.setCancelButtonText(texts.cancel);
    dropPictures(dialog);
    if (dialog.exec() != QDialog::Accepted) return {};
    const QString answer = dialog.textValue();
    return answer == qtText(preset) ? preset : utf8(answer);
}

std::string askForFolder(QWidget* parent, const DialogTexts& texts, const std::string& title,
                         const std::string& start) {
    if (const std::string notice = noticeOfSilence(texts); !notice.empty())
        return absoluteFrom(start, askForText(parent, texts, notice + title, start));
    auto question = std::make_unique<FileQuestion>(parent, qtText(title), start);
    question->dialog.setFileMode(QFileDialog::Directory);
    question->dialog.setOption(QFileDialog::ShowDirsOnly);
    return answerOf(std::move(question), texts);
}

std::string askForSavePath(QWidget* parent, const DialogTexts& texts, const std::string& filter,
                           const std::string& extension, const std::string& folder, const std::string& name) {
    if (const std::string notice = noticeOfSilence(texts); !notice.empty())
        return askForTypedTarget(parent, texts, notice, extension, folder, name);
    auto question = std::make_unique<FileQuestion>(parent, QString(), folder);
    QFileDialog& dialog = question->dialog;
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilters(qtFilter(filter).split(QStringLiteral(";;")));
    dialog.setDefaultSuffix(qtText(extension));
    if (!name.empty()) dialog.selectFile(qtText(name));
    return answerOf(std::move(question), texts);
}

std::string askForOpenPath(QWidget* parent, const DialogTexts& texts, const std::string& filter,
                           const std::string& folder) {
    if (const std::string notice = noticeOfSilence(texts); !notice.empty())
        return absoluteFrom(folder, askForText(parent, texts, notice, folder));
    auto question = std::make_unique<FileQuestion>(parent, QString(), folder);
    question->dialog.setFileMode(QFileDialog::ExistingFile);
    question->dialog.setNameFilters(qtFilter(filter).split(QStringLiteral(";;")));
    return answerOf(std::move(question), texts);
}

std::optional<GridFont> askForFont(QWidget* parent, const GridFont& start) {
    QFontDialog dialog(qtFont(start), parent);
    dialog.setOption(QFontDialog::DontUseNativeDialog);
    dropPictures(dialog);
    fitToScreen(dialog);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    const QFont chosen = dialog.selectedFont();
    return GridFont{utf8(chosen.family()), chosen.pointSizeF(), chosen.bold(), chosen.italic()};
}

QFont qtFont(const GridFont& font) {
    QFont wanted = QGuiApplication::font();
    const QString name = qtText(font.name);
    if (QFontDatabase::hasFamily(name)) wanted.setFamilies({name});
    if (font.points > 0) wanted.setPointSizeF(font.points);
    wanted.setBold(font.bold);
    wanted.setItalic(font.italic);
    return wanted;
}

}  // namespace hl
