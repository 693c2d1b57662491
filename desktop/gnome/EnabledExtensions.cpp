#include "desktop/gnome/EnabledExtensions.h"

#include "desktop/applications/DesktopPatience.h"

#include <QProcess>

#include <chrono>
#include <optional>

using namespace Qt::StringLiterals;

namespace kestrin::desktop {

namespace {

std::optional<QByteArray> askTool(const QStringList &arguments) {
    QProcess tool;
    tool.start(u"gsettings"_s, arguments, QIODevice::ReadOnly);
    const std::chrono::milliseconds patience = desktopPatience;
    if (!tool.waitForFinished(static_cast<int>(patience.count())) ||
        tool.exitStatus() != QProcess::NormalExit || tool.exitCode() != 0)
        return std::nullopt;
    return tool.readAllStandardOutput().trimmed();
}

bool setIn(const QString &key, bool isIn) {
    const QString schema = u"org.gnome.shell"_s;
    const auto before = askTool({u"get"_s, schema, key});
    if (!before)
        return !isIn;
    const QByteArray after = listWith(*before, KESTRIN_GNOME_EXTENSION, isIn);
    return after == *before ||
           (!after.isEmpty() && askTool({u"set"_s, schema, key, QString::fromUtf8(after)}));
}

} // namespace

QByteArray listWith(QByteArray list, const QByteArray &item, bool isIn) {
    if (!list.contains('[') || !list.endsWith(']'))
        return {};
    const QByteArray quoted = '\'' + item + '\'';
    if (list.contains(quoted) == isIn)
        return list;
    if (isIn)
        return list.chopped(1) + (list.endsWith("[]") ? "" : ", ") + quoted + ']';
    for (const QByteArray &part : {", " + quoted, quoted + ", ", quoted})
        list.replace(part, "");
    return list;
}

bool setEnabledAtLogin(bool isEnabled) {
    // The second list wins, and the shell itself writes there what the user switches off.
    return setIn(u"enabled-extensions"_s, isEnabled) && setIn(u"disabled-extensions"_s, false);
}

} // namespace kestrin::desktop
