#include <QtQuickTest/quicktest.h>

#include <QQmlEngine>
#include <QQmlExtensionPlugin>
#include <QQuickWindow>

Q_IMPORT_QML_PLUGIN(TinkraPlugin)

namespace {

class Setup : public QObject {
    Q_OBJECT

public Q_SLOTS:
    static void qmlEngineAvailable(QQmlEngine* engine)
    {
        engine->addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQuickWindow::setDefaultAlphaBuffer(true);
    }
};

}

QUICK_TEST_MAIN_WITH_SETUP(TinkraViews, Setup)

#include "main.moc"
