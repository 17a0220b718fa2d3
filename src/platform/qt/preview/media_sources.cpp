#include "platform/qt/preview/media_sources.h"

#include <gst/gst.h>

#include <QByteArray>
#include <algorithm>
#include <array>
#include <memory>
#include <string_view>

namespace hl {

namespace {

using List = std::unique_ptr<GList, decltype(&gst_plugin_feature_list_free)>;

/// Words between slashes in an element's description of its kind. "Adaptive" elements read lists and fetch
/// their parts; "Editing" ones read projects that name files.
constexpr std::array<std::string_view, 4> kOutwards = {"Source", "Network", "Adaptive", "Editing"};

bool hasWord(std::string_view kind, std::string_view word) {
    while (!kind.empty()) {
        const std::size_t end = std::min(kind.find('/'), kind.size());
        if (kind.substr(0, end) == word) return true;
        kind.remove_prefix(std::min(end + 1, kind.size()));
    }
    return false;
}

bool opensPlaces(gpointer feature) {
    if (!GST_IS_ELEMENT_FACTORY(feature)) return false;
    auto* factory = GST_ELEMENT_FACTORY(feature);
    const std::string_view name = GST_OBJECT_NAME(factory);
    // The second one chooses among the existing sources.
    if (name == "filesrc" || name == "urisourcebin") return false;
    if (gst_element_factory_get_uri_type(factory) == GST_URI_SRC) return true;
    const char* kind = gst_element_factory_get_metadata(factory, GST_ELEMENT_METADATA_KLASS);
    return kind == nullptr ||
           std::ranges::any_of(kOutwards, [&](std::string_view word) { return hasWord(kind, word); });
}

template <class Each>
void forEach(const List& list, Each each) {
    for (const GList* one = list.get(); one != nullptr; one = one->next) each(one->data);
}

List featuresOf(GstRegistry* registry, const char* plugin) {
    return {gst_registry_get_feature_list_by_plugin(registry, plugin), &gst_plugin_feature_list_free};
}

// A plugin adds elements when it is loaded, so it is loaded first, or else removed as a whole.
void leaveInside(GstRegistry* registry, GstPlugin* plugin) {
    const char* name = gst_plugin_get_name(plugin);
    bool opens = false, doesMore = false;
    forEach(featuresOf(registry, name),
            [&](gpointer feature) { (opensPlaces(feature) ? opens : doesMore) = true; });
    if (!opens) return;
    GstPlugin* loaded = doesMore ? gst_plugin_load_by_name(name) : nullptr;
    if (loaded == nullptr) return gst_registry_remove_plugin(registry, plugin);
    forEach(featuresOf(registry, name), [&](gpointer feature) {
        if (opensPlaces(feature)) gst_registry_remove_feature(registry, GST_PLUGIN_FEATURE(feature));
    });
    gst_object_unref(loaded);
}

}  // namespace

void prepareMediaLibrary(const std::string& folder) {
    qputenv("QT_MEDIA_BACKEND", "gstreamer");
    // Nothing can be created below something that is no folder.
    const std::string place = folder.empty() ? "/dev/null" : folder;
    qputenv("GST_REGISTRY_1_0", QByteArray::fromStdString(place + "/mediaplugins.cache"));
}

bool allowLocalFilesAlone() {
    if (gst_is_initialized() == FALSE) return false;
    GstRegistry* registry = gst_registry_get();
    const std::unique_ptr<GList, decltype(&gst_plugin_list_free)> plugins(
        gst_registry_get_plugin_list(registry), &gst_plugin_list_free);
    for (const GList* one = plugins.get(); one != nullptr; one = one->next)
        leaveInside(registry, GST_PLUGIN(one->data));
    return true;
}

}  // namespace hl
