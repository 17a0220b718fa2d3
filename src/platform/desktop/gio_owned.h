// Owns what GLib and GIO hand out. Must be included before any header of Qt, for which `signals` is a
// keyword.
#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

namespace hl {

struct GioRelease {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(GVariant* value) const { g_variant_unref(value); }
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
    void operator()(GSource* source) const { g_source_unref(source); }
    /// Releases a list that owns its objects.
    void operator()(GList* objects) const { g_list_free_full(objects, g_object_unref); }
};

template <typename T>
using Owned = std::unique_ptr<T, GioRelease>;

/// Returns an empty text for null.
inline std::string gioText(const char* text) {
    return text != nullptr ? text : "";
}

}  // namespace hl
