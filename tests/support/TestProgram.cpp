#include "tests/support/TestClass.h"

#ifdef QT_GUI_LIB
#include <QGuiApplication>
#else
#include <QCoreApplication>
#endif

int main(int argc, char **argv) {
    const auto known = kestrin::samples::testClasses();
    const auto found = known.find(QString::fromUtf8(argc > 1 ? argv[1] : ""));
    if (found == known.end())
        qFatal("usage: %s tst_NAME [ARGUMENT...]", argv[0]);
    argv[1] = argv[0];
    --argc;
    ++argv;
#ifdef QT_GUI_LIB
    QGuiApplication application(argc, argv);
#else
    QCoreApplication application(argc, argv);
#endif
    return QTest::qExec(found->second().get(), argc, argv);
}
