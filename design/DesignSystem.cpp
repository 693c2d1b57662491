#include "design/DesignSystem.h"

#include <QtCore/qglobal.h>

// Generated with the module.
extern void qml_register_types_KestrinDesignSystem();

// Resources of a static library are there only once somebody asks for them; the macro works in the global
// namespace only.
static void initializeResources() {
    Q_INIT_RESOURCE(KestrinEmbedded);
    Q_INIT_RESOURCE(KestrinDesignSystem_raw_qml_0);
    Q_INIT_RESOURCE(qmake_KestrinDesignSystem);
    Q_INIT_RESOURCE(qmlcache_KestrinDesignSystem);
}

namespace kestrin::design {

void registerDesignSystem() {
    initializeResources();
    qml_register_types_KestrinDesignSystem();
}

} // namespace kestrin::design
