// Renders the pictures of docs/pictures, or compares them with what the views look like now.
//
//   tinkra-pictures write FOLDER
//   tinkra-pictures compare FOLDER FAILURES   writes what differs into FAILURES, and fails
//
// The scale is Qt's own: QT_SCALE_FACTOR.

#include "Pictures.h"

#include <QDir>
#include <QGuiApplication>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>
#include <QRegularExpression>

#include <cstdio>
#include <exception>

Q_IMPORT_QML_PLUGIN(TinkraPlugin)

namespace {

using namespace Tinkra;

bool write(const QImage& image, const QDir& folder, const QString& name)
{
    if (image.save(folder.filePath(name)))
        return true;
    std::fprintf(stderr, "pictures: cannot write %s\n", qPrintable(folder.filePath(name)));
    return false;
}

bool isAsKept(const QImage& image, const QDir& kept, const QDir& failures, const QString& name)
{
    const QImage reference(kept.filePath(name));
    const auto difference = compare(reference, image);
    if (!difference.isVisible())
        return true;
    write(image, failures, name);
    std::fprintf(stderr, "pictures: %s %s; see %s\n", qPrintable(name),
        difference.sameSize ? qPrintable(
            QStringLiteral("differs in %1 pixels, by up to %2").arg(difference.pixels).arg(difference.worst))
                            : "is missing or has another size",
        qPrintable(failures.filePath(name)));
    return false;
}

/// "banner-rtl-long" for "BannerRtlLongPicture.qml".
QString sceneName(const QString& file)
{
    static const QRegularExpression innerCapital(QStringLiteral("(?<=.)([A-Z])"));
    auto name = file.chopped(int(sizeof "Picture.qml") - 1);
    return name.replace(innerCapital, QStringLiteral("-\\1")).toLower();
}

int run(const QStringList& arguments)
{
    const bool compares = arguments.value(1) == QStringLiteral("compare") && arguments.size() == 4;
    if (!compares && (arguments.value(1) != QStringLiteral("write") || arguments.size() != 3)) {
        std::fputs("usage: tinkra-pictures write FOLDER | compare FOLDER FAILURES\n", stderr);
        return 2;
    }
    const QDir folder(arguments.at(2));
    const QDir failures(arguments.value(3));
    (compares ? failures : folder).mkpath(QStringLiteral("."));

    QQmlEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    const int scale = qRound(qApp->devicePixelRatio());
    const QDir scenes(QStringLiteral(":/scenes"));
    bool succeeded = true;
    for (const auto& file : scenes.entryList({QStringLiteral("*Picture.qml")})) {
        const auto image = picture(engine, QUrl(QStringLiteral("qrc:/scenes/") + file));
        const auto name = pictureName(sceneName(file), scale);
        succeeded &= compares ? isAsKept(image, folder, failures, name) : write(image, folder, name);
    }
    return succeeded ? 0 : 1;
}

}

int main(int argc, char** argv)
{
    QQuickWindow::setDefaultAlphaBuffer(true);
    const QGuiApplication application(argc, argv);
    try {
        return run(QGuiApplication::arguments());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "pictures: %s\n", error.what());
        return 1;
    }
}
