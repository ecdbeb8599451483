#include "bench/PathPeers.h"

#include <librsvg/rsvg.h>

#include <memory>

namespace roost::bench::librsvgPeer {

namespace {

struct Unref {
    void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
};

std::unique_ptr<RsvgHandle, Unref> handleOf(const std::string& document)
{
    return std::unique_ptr<RsvgHandle, Unref>{rsvg_handle_new_from_data(
        reinterpret_cast<const guint8*>(document.data()), document.size(), nullptr)};
}

} // namespace

bool load(const std::string& document) { return handleOf(document) != nullptr; }

Bounds bounds(const std::string& document)
{
    const auto handle = handleOf(document);
    RsvgRectangle ink{};
    if (!handle || !rsvg_handle_get_geometry_for_element(handle.get(), "#path", &ink, nullptr, nullptr)) {
        return {};
    }
    // It gives the element moved to the origin.
    RsvgRectangle place{};
    const RsvgRectangle viewport{0, 0, 1000, 1000};
    rsvg_handle_get_geometry_for_layer(handle.get(), "#path", &viewport, &place, nullptr, nullptr);
    return {place.x, place.y, ink.width, ink.height};
}

} // namespace roost::bench::librsvgPeer
