#include "Tamsy_MusicApp.h"

#include "Platform/SingleInstance.h"
#include "Platform/UserDefaults.h"

#include <QFont>
#include <QGuiApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QQuickStyle>
#include <QTranslator>

namespace {

/// The interface is Chinese wherever it runs: glyph forms, standard dialogs and digits follow.
void speakChinese(QGuiApplication& application) {
    QLocale::setDefault(
        QLocale(QLocale::Chinese, QLocale::SimplifiedChineseScript, QLocale::China));
    const QString translations = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    for (const char* catalogue : {"qtbase_zh_CN", "qtdeclarative_zh_CN"}) {
        auto* translator = new QTranslator(&application);
        if (translator->load(QLatin1String(catalogue), translations))
            QGuiApplication::installTranslator(translator);
    }
    QFont font = QGuiApplication::font();
    font.setFamilies({font.family(), QStringLiteral("Noto Sans CJK SC")});
    QGuiApplication::setFont(font);
}

} // namespace

int main(int argc, char** argv) {
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("tamsy-music"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tamsy Music"));
    QGuiApplication::setDesktopFileName(QStringLiteral("tamsy-music"));
    speakChinese(application);
    tamsy::Tamsy_MusicApp app(tamsy::UserDefaults::standard());
    if (!app.openMainWindow())
        return 1;
    return QGuiApplication::exec();
}
