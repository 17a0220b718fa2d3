#include "platform/qt/preview/stream_source.h"

#include <gst/base/gstbasesrc.h>
#include <gst/gst.h>

#include <utility>

namespace hl {

namespace {

constexpr const char* kSourceName = "harborlanternstream";
constexpr const char* kOffered = "stream";  // What hangs on the element's factory under this name.

using Stream = std::shared_ptr<FileStream>;

struct StreamSource {
    GstBaseSrc base;
    Stream* stream;  ///< Null until there is an address: the library makes no C++ object, but zeroes.
};

GstElementFactory* factory() {
    GstPluginFeature* found =
        gst_registry_lookup_feature(gst_registry_get(), kSourceName);  // Counted for whoever asks.
    return found != nullptr ? GST_ELEMENT_FACTORY(found) : nullptr;
}

Stream offered() {
    GstElementFactory* where = factory();
    if (where == nullptr) return nullptr;
    const auto* stream = static_cast<Stream*>(g_object_get_data(G_OBJECT(where), kOffered));
    Stream copy = stream != nullptr ? *stream : nullptr;
    gst_object_unref(where);
    return copy;
}

StreamSource* sourceOf(gpointer object) {
    return static_cast<StreamSource*>(object);
}

FileStream* streamOf(GstBaseSrc* base) {
    const Stream* stream = sourceOf(base)->stream;
    return stream != nullptr ? stream->get() : nullptr;
}

// --- what the library asks

GstURIType uriType(GType) {
    return GST_URI_SRC;
}

const gchar* const* uriProtocols(GType) {
    static const gchar* const all[] = {"harborlantern", nullptr};
    return all;
}

gchar* uriOf(GstURIHandler*) {
    return g_strdup(kStreamAddress);
}

gboolean setUri(GstURIHandler* handler, const gchar*, GError**) {
    StreamSource* source = sourceOf(handler);
    delete std::exchange(source->stream, new Stream(offered()));
    return TRUE;
}

gboolean start(GstBaseSrc* base) {
    FileStream* stream = streamOf(base);
    if (stream == nullptr) return FALSE;
    stream->allowReading(true);
    return TRUE;
}

gboolean isSeekable(GstBaseSrc*) {
    return TRUE;
}

gboolean sizeOf(GstBaseSrc* base, guint64* size) {
    const FileStream* stream = streamOf(base);
    if (stream != nullptr) *size = stream->size();
    return stream != nullptr;
}

gboolean unlock(GstBaseSrc* base) {
    if (FileStream* stream = streamOf(base)) stream->allowReading(false);
    return TRUE;
}

gboolean unlockStop(GstBaseSrc* base) {
    if (FileStream* stream = streamOf(base)) stream->allowReading(true);
    return TRUE;
}

GstFlowReturn fill(GstBaseSrc* base, guint64 offset, guint bytes, GstBuffer* buffer) {
    FileStream* stream = streamOf(base);
    GstMapInfo memory;
    if (stream == nullptr || gst_buffer_map(buffer, &memory, GST_MAP_WRITE) == FALSE) return GST_FLOW_ERROR;
    const Result<std::size_t> got =
        stream->read(offset, static_cast<char*>(static_cast<void*>(memory.data)), bytes);
    gst_buffer_unmap(buffer, &memory);
    if (got.failedAs(ErrorKind::kNoAnswer)) return GST_FLOW_FLUSHING;
    if (!got) {
        GST_ELEMENT_ERROR(base, RESOURCE, READ, ("%s", got.error().text.c_str()), (nullptr));
        return GST_FLOW_ERROR;
    }
    if (*got == 0) return GST_FLOW_EOS;
    if (*got < bytes) gst_buffer_resize(buffer, 0, static_cast<gssize>(*got));
    GST_BUFFER_OFFSET(buffer) = offset;
    GST_BUFFER_OFFSET_END(buffer) = offset + *got;
    return GST_FLOW_OK;
}

// --- the element's type

void initHandler(gpointer interface, gpointer) {
    auto* handler = static_cast<GstURIHandlerInterface*>(interface);
    handler->get_type = uriType;
    handler->get_protocols = uriProtocols;
    handler->get_uri = uriOf;
    handler->set_uri = setUri;
}

void finalize(GObject* object) {
    delete std::exchange(sourceOf(object)->stream, nullptr);
    G_OBJECT_CLASS(g_type_class_peek_parent(G_OBJECT_GET_CLASS(object)))->finalize(object);
}

void initClass(gpointer ours, gpointer) {
    G_OBJECT_CLASS(ours)->finalize = finalize;
    GstElementClass* element = GST_ELEMENT_CLASS(ours);
    gst_element_class_set_static_metadata(element, "File that is read ahead", "Source/File",
                                          "Reads a file whose disk may not answer", "Harborlantern");
    gst_element_class_add_pad_template(
        element, gst_pad_template_new("src", GST_PAD_SRC, GST_PAD_ALWAYS, gst_caps_new_any()));
    GstBaseSrcClass* base = GST_BASE_SRC_CLASS(ours);
    base->start = start;
    base->is_seekable = isSeekable;
    base->get_size = sizeOf;
    base->unlock = unlock;
    base->unlock_stop = unlockStop;
    base->fill = fill;
}

void initSource(GTypeInstance* instance, gpointer) {
    gst_base_src_set_dynamic_size(GST_BASE_SRC(instance), FALSE);
}

GType makeType() {
    const GTypeInfo facts{.class_size = sizeof(GstBaseSrcClass),
                          .base_init = nullptr,
                          .base_finalize = nullptr,
                          .class_init = initClass,
                          .class_finalize = nullptr,
                          .class_data = nullptr,
                          .instance_size = sizeof(StreamSource),
                          .n_preallocs = 0,
                          .instance_init = initSource,
                          .value_table = nullptr};
    const GInterfaceInfo handler{
        .interface_init = initHandler, .interface_finalize = nullptr, .interface_data = nullptr};
    const GType type = g_type_register_static(GST_TYPE_BASE_SRC, "HarborlanternStream", &facts, GTypeFlags{});
    g_type_add_interface_static(type, GST_TYPE_URI_HANDLER, &handler);
    return type;
}

}  // namespace

bool addStreamSource() {
    static const GType type = makeType();
    return gst_element_register(nullptr, kSourceName, GST_RANK_PRIMARY, type) != FALSE;
}

void offerStream(std::shared_ptr<FileStream> stream) {
    GstElementFactory* where = factory();
    if (where == nullptr) return;
    g_object_set_data_full(G_OBJECT(where), kOffered, stream ? new Stream(std::move(stream)) : nullptr,
                           [](gpointer old) { delete static_cast<Stream*>(old); });
    gst_object_unref(where);
}

}  // namespace hl
