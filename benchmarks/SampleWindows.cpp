#include "benchmarks/SampleWindows.h"

#include "benchmarks/BareDesktop.h"

using namespace Qt::StringLiterals;

namespace kestrin::bench {

QString optionsOf(const QString &windowClass) {
    const QString native = qEnvironmentVariableIsSet("SWAYSOCK") ? u"--wayland "_s : QString();
    return native + u"--class %1/%1 --type NORMAL"_s.arg(windowClass);
}

std::list<samples::SampleApp> openWindows(const QStringList &classes) {
    std::list<samples::SampleApp> applications;
    for (const QString &name : classes)
        applications.emplace_back(optionsOf(name));
    BareDesktop::ofEnvironment()->waitForWindows(applications.size());
    return applications;
}

QStringList unknownClasses(int count) {
    QStringList classes;
    for (int i = 0; i < count; ++i)
        classes.append(u"sample"_s + QString::number(i));
    return classes;
}

} // namespace kestrin::bench
