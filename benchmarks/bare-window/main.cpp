// The floor of Kestrin's window: one Qt Quick window with one rectangle, drawn by the same renderer.

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

using namespace Qt::StringLiterals;

int main(int argc, char **argv) {
    // Chosen as Kestrin chooses it.
    if (!qEnvironmentVariableIsSet("QT_QUICK_BACKEND") && !qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    const QQmlApplicationEngine engine(u"qrc:/qt-project.org/imports/BareWindow/BareWindow.qml"_s);
    return QGuiApplication::exec();
}
