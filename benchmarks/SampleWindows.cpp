#include "benchmarks/SampleWindows.h"

#include "benchmarks/Run.h"
#include "benchmarks/XDisplay.h"

using namespace Qt::StringLiterals;

namespace kestrin::bench {

QString optionsOf(const QString &windowClass) {
    return u"--class %1/%1 --type NORMAL"_s.arg(windowClass);
}

std::list<samples::SampleApp> openWindows(const QStringList &classes) {
    std::list<samples::SampleApp> applications;
    for (const QString &name : classes)
        applications.emplace_back(optionsOf(name));
    const XDisplay display;
    if (!samples::waitBlocking([&] { return display.windowList().size() == applications.size(); }))
        giveUp("the window manager does not list the windows.");
    return applications;
}

QStringList unknownClasses(int count) {
    QStringList classes;
    for (int i = 0; i < count; ++i)
        classes.append(u"sample"_s + QString::number(i));
    return classes;
}

} // namespace kestrin::bench
