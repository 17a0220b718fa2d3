#include "platform/qt/window/desktop_settings.h"

#include <QApplication>
#include <QFileInfo>
#include <QFontInfo>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QSettings>
#include <QStyle>
#include <QTranslator>
#include <clocale>

#include "platform/qt/common/qt_convert.h"

namespace hl {

namespace {

constexpr const char* kCacheHome = "XDG_CACHE_HOME";
/// Used by the offscreen platform, and on a desktop that sets no theme.
constexpr const char* kThemeOfLastResort = "Adwaita";

QtMessageHandler previousHandler = nullptr;

bool isNoise(const QString& text) {
    return text.contains(QLatin1String("propagateSizeHints")) ||
           text.startsWith(QLatin1String("Detected locale")) ||
           text.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")) ||
           text.startsWith(QLatin1String("This plugin does not support"));
}

void passOn(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (!isNoise(text) && previousHandler != nullptr) previousHandler(type, context, text);
}

void chooseStyle() {
    const QString style = QApplication::style()->name();
    if (style == QLatin1String("windows")) QApplication::setStyle(QStringLiteral("Fusion"));
}

void chooseIconTheme() {
    const QString theme = QIcon::themeName();
    if (theme.isEmpty() || theme == QLatin1String("hicolor"))
        QIcon::setThemeName(QLatin1String(kThemeOfLastResort));
}

void translateDialogs(const std::string& language) {
    auto* translator = new QTranslator(QCoreApplication::instance());
    const QLocale locale(qtText(language));
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (translator->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(translator);
    QLocale::setDefault(locale);
}

/// Without a session bus libdbus would start one, which writes into the user's home and outlives everything.
void wantNoBusOfItsOwn() {
    constexpr const char* kBus = "DBUS_SESSION_BUS_ADDRESS";
    const bool usual = QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
    if (!qEnvironmentVariableIsSet(kBus) && !usual) qputenv(kBus, "disabled:");
}

}  // namespace

WritesLedTo::WritesLedTo(const std::string& folder) {
    wantNoBusOfItsOwn();
    if (qEnvironmentVariableIsSet(kCacheHome)) cacheHome_ = qgetenv(kCacheHome);
    qputenv(kCacheHome, QByteArray::fromStdString(folder));
    // The file dialog keeps its settings there. XDG_CONFIG_HOME would have the same effect but also hide the
    // desktop's settings.
    const QString path = qtText(folder);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, path);
}

void WritesLedTo::settle() {
    if (settled_) return;
    settled_ = true;
    // fontconfig reads the variable when the first font is looked for, and never again.
    if (qApp != nullptr) QFontInfo(QApplication::font()).family();
    if (cacheHome_) {
        qputenv(kCacheHome, *cacheHome_);
    } else {
        qunsetenv(kCacheHome);
    }
}

void quietMessages() {
    if (previousHandler == nullptr) previousHandler = qInstallMessageHandler(passOn);
}

void followDesktop(const WindowParts& parts) {
    // QApplication has set the user's locale for the C library, where a comma may be the decimal separator.
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setApplicationName(qtText(parts.name));
    QApplication::setDesktopFileName(QStringLiteral("harborlantern"));  // Wayland finds the icon by it.
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    chooseStyle();
    chooseIconTheme();
    translateDialogs(parts.language);
}

}  // namespace hl
