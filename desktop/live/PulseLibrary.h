#pragma once

#include <pulse/pulseaudio.h>

namespace kestrin::desktop {

/// The functions of PulseAudio's client library, by their names without "pa_". With it come two dozen others,
/// so it is loaded when it is needed, and not with the program.
struct PulseLibrary {
    /// Null where it is not installed.
    static const PulseLibrary *loaded();

    decltype(&pa_mainloop_new) mainloop_new = nullptr;
    decltype(&pa_mainloop_free) mainloop_free = nullptr;
    decltype(&pa_mainloop_get_api) mainloop_get_api = nullptr;
    decltype(&pa_mainloop_set_poll_func) mainloop_set_poll_func = nullptr;
    decltype(&pa_mainloop_prepare) mainloop_prepare = nullptr;
    decltype(&pa_mainloop_poll) mainloop_poll = nullptr;
    decltype(&pa_mainloop_dispatch) mainloop_dispatch = nullptr;
    decltype(&pa_context_new) context_new = nullptr;
    decltype(&pa_context_connect) context_connect = nullptr;
    decltype(&pa_context_disconnect) context_disconnect = nullptr;
    decltype(&pa_context_unref) context_unref = nullptr;
    decltype(&pa_context_get_state) context_get_state = nullptr;
    decltype(&pa_context_subscribe) context_subscribe = nullptr;
    decltype(&pa_context_set_subscribe_callback) context_set_subscribe_callback = nullptr;
    decltype(&pa_context_get_server_info) context_get_server_info = nullptr;
    decltype(&pa_context_get_source_info_list) context_get_source_info_list = nullptr;
    decltype(&pa_context_get_source_output_info_list) context_get_source_output_info_list = nullptr;
    decltype(&pa_operation_unref) operation_unref = nullptr;
    decltype(&pa_proplist_gets) proplist_gets = nullptr;
};

} // namespace kestrin::desktop
