#pragma once

#include <pipewire/impl-module.h>
#include <pipewire/pipewire.h>

namespace kestrin::desktop {

/// The functions of PipeWire's client library, by their names without "pw_". It weighs half a megabyte, so it
/// is loaded when it is needed, and not with the program. What the library's headers make of structures needs
/// no function.
struct PipeWireLibrary {
    /// Ready for use. Null where it is not installed.
    static const PipeWireLibrary *loaded();

    decltype(&pw_init) init = nullptr;
    decltype(&pw_log_set_level) log_set_level = nullptr;
    decltype(&pw_loop_new) loop_new = nullptr;
    decltype(&pw_loop_destroy) loop_destroy = nullptr;
    decltype(&pw_properties_new) properties_new = nullptr;
    decltype(&pw_context_new) context_new = nullptr;
    decltype(&pw_context_get_data_loop) context_get_data_loop = nullptr;
    decltype(&pw_context_load_module) context_load_module = nullptr;
    decltype(&pw_context_connect) context_connect = nullptr;
    decltype(&pw_context_destroy) context_destroy = nullptr;
    decltype(&pw_data_loop_invoke) data_loop_invoke = nullptr;
    decltype(&pw_data_loop_stop) data_loop_stop = nullptr;
    decltype(&pw_core_disconnect) core_disconnect = nullptr;
    decltype(&pw_proxy_destroy) proxy_destroy = nullptr;
};

} // namespace kestrin::desktop
