#include "desktop/live/PulseLibrary.h"

#include "desktop/live/LibraryFunctions.h"

namespace kestrin::desktop {

namespace {

bool resolveAll(QLibrary &library, PulseLibrary &functions) {
    return resolve(library, "pa_mainloop_new", functions.mainloop_new) &&
           resolve(library, "pa_mainloop_free", functions.mainloop_free) &&
           resolve(library, "pa_mainloop_get_api", functions.mainloop_get_api) &&
           resolve(library, "pa_mainloop_set_poll_func", functions.mainloop_set_poll_func) &&
           resolve(library, "pa_mainloop_prepare", functions.mainloop_prepare) &&
           resolve(library, "pa_mainloop_poll", functions.mainloop_poll) &&
           resolve(library, "pa_mainloop_dispatch", functions.mainloop_dispatch) &&
           resolve(library, "pa_context_new", functions.context_new) &&
           resolve(library, "pa_context_connect", functions.context_connect) &&
           resolve(library, "pa_context_disconnect", functions.context_disconnect) &&
           resolve(library, "pa_context_unref", functions.context_unref) &&
           resolve(library, "pa_context_get_state", functions.context_get_state) &&
           resolve(library, "pa_context_subscribe", functions.context_subscribe) &&
           resolve(library, "pa_context_set_subscribe_callback", functions.context_set_subscribe_callback) &&
           resolve(library, "pa_context_get_server_info", functions.context_get_server_info) &&
           resolve(library, "pa_context_get_source_info_list", functions.context_get_source_info_list) &&
           resolve(library, "pa_context_get_source_output_info_list",
                   functions.context_get_source_output_info_list) &&
           resolve(library, "pa_operation_unref", functions.operation_unref) &&
           resolve(library, "pa_proplist_gets", functions.proplist_gets);
}

} // namespace

const PulseLibrary *PulseLibrary::loaded() {
    static QLibrary library(QStringLiteral("pulse"), 0);
    static PulseLibrary functions;
    static const bool isComplete = resolveAll(library, functions);
    return isComplete ? &functions : nullptr;
}

} // namespace kestrin::desktop
