#include "desktop/live/PipeWireLibrary.h"

#include "desktop/live/LibraryFunctions.h"

namespace kestrin::desktop {

namespace {

bool resolveAll(QLibrary &library, PipeWireLibrary &functions) {
    return resolve(library, "pw_init", functions.init) &&
           resolve(library, "pw_log_set_level", functions.log_set_level) &&
           resolve(library, "pw_loop_new", functions.loop_new) &&
           resolve(library, "pw_loop_destroy", functions.loop_destroy) &&
           resolve(library, "pw_properties_new", functions.properties_new) &&
           resolve(library, "pw_context_new", functions.context_new) &&
           resolve(library, "pw_context_get_data_loop", functions.context_get_data_loop) &&
           resolve(library, "pw_context_load_module", functions.context_load_module) &&
           resolve(library, "pw_context_connect", functions.context_connect) &&
           resolve(library, "pw_context_destroy", functions.context_destroy) &&
           resolve(library, "pw_data_loop_invoke", functions.data_loop_invoke) &&
           resolve(library, "pw_data_loop_stop", functions.data_loop_stop) &&
           resolve(library, "pw_core_disconnect", functions.core_disconnect) &&
           resolve(library, "pw_proxy_destroy", functions.proxy_destroy);
}

/// What the library does on its first use and cannot take back. It writes nothing into our terminal unless
/// somebody asks for it.
void prepare(const PipeWireLibrary &library) {
    library.init(nullptr, nullptr);
    if (!qEnvironmentVariableIsSet("PIPEWIRE_DEBUG"))
        library.log_set_level(SPA_LOG_LEVEL_NONE);
}

} // namespace

const PipeWireLibrary *PipeWireLibrary::loaded() {
    static QLibrary library(QStringLiteral("pipewire-0.3"), 0);
    static PipeWireLibrary functions;
    static const bool isComplete = [] {
        const bool isThere = resolveAll(library, functions);
        if (isThere)
            prepare(functions);
        return isThere;
    }();
    return isComplete ? &functions : nullptr;
}

} // namespace kestrin::desktop
