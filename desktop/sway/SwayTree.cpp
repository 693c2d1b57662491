#include "desktop/sway/SwayTree.h"

#include <simdjson.h>

#include <array>
#include <limits>
#include <string_view>

namespace kestrin::desktop {

namespace {

using Element = simdjson::dom::element;

/// Titles are handed on as clients set them, and one that is no UTF-8 would make all of it unreadable.
void mend(QByteArray &json) {
    if (!simdjson::validate_utf8(json.constData(), static_cast<std::size_t>(json.size())))
        json = QString::fromUtf8(json).toUtf8();
}

std::optional<Element> parsed(simdjson::dom::parser &parser, QByteArray &json) {
    mend(json);
    Element root;
    if (parser.parse(json.constData(), static_cast<std::size_t>(json.size())).get(root) != simdjson::SUCCESS)
        return std::nullopt;
    return root;
}

QString text(const Element &node, std::string_view name) {
    std::string_view value;
    if (node[name].get(value) != simdjson::SUCCESS)
        return {};
    return QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size()));
}

qint64 number(const Element &node, std::string_view name) {
    int64_t value = 0;
    return node[name].get(value) == simdjson::SUCCESS ? value : 0;
}

/// The kinds of X11 windows that no task bar shows.
bool isShown(std::string_view type) {
    constexpr std::array notShown{"desktop",    "dock",          "toolbar", "menu",  "utility",      "splash",
                                  "popup_menu", "dropdown_menu", "tooltip", "combo", "notification", "dnd"};
    return std::ranges::find(notShown, type) == notShown.end();
}

SourceWindow windowOf(const Element &node, qint32 process) {
    SourceWindow window;
    window.id = static_cast<quint64>(number(node, "id"));
    window.process = process;
    window.claims.className = text(node, "app_id");
    window.claims.sandboxId = text(node, "sandbox_app_id");
    Element properties;
    if (node["window_properties"].get(properties) != simdjson::SUCCESS)
        return window;
    window.claims.className = text(properties, "class");
    window.claims.instanceName = text(properties, "instance");
    std::string_view type;
    window.isRegular = properties["window_type"].get(type) != simdjson::SUCCESS || isShown(type);
    return window;
}

void collect(const Element &node, QList<SourceWindow> &windows) {
    const qint64 process = number(node, "pid");
    if (process > 0 && process <= std::numeric_limits<qint32>::max() && windows.size() < mostSwayWindows)
        windows.append(windowOf(node, static_cast<qint32>(process)));
    for (const std::string_view children : {"nodes", "floating_nodes"}) {
        simdjson::dom::array array;
        if (node[children].get(array) != simdjson::SUCCESS)
            continue;
        for (const Element &child : array)
            collect(child, windows);
    }
}

} // namespace

std::optional<QList<SourceWindow>> windowsOfSwayTree(QByteArray json) {
    simdjson::dom::parser parser;
    const auto root = parsed(parser, json);
    if (!root)
        return std::nullopt;
    QList<SourceWindow> windows;
    collect(*root, windows);
    return windows;
}

bool mayBeSwayLaunch(QByteArray json) {
    simdjson::dom::parser parser;
    const auto event = parsed(parser, json);
    const QString change = event ? text(*event, "change") : QString();
    // Whatever else it tells of was a window before.
    return change == QLatin1StringView("new") || change == QLatin1StringView("close");
}

bool isSwayCommandDone(QByteArray json) {
    simdjson::dom::parser parser;
    const auto answer = parsed(parser, json);
    simdjson::dom::array parts;
    if (!answer || answer->get(parts) != simdjson::SUCCESS)
        return false;
    for (const Element &part : parts) {
        bool isDone = false;
        if (part["success"].get(isDone) == simdjson::SUCCESS && isDone)
            return true;
    }
    return false;
}

} // namespace kestrin::desktop
