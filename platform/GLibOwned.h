#pragma once

#include <gio/gio.h>

#include <memory>

namespace roost {

/// What GLib hands out and wants back, as owned pointers. `GOwned<T>` is for classes, the others for what has
/// a release of its own.
template <auto release>
struct GReleased {
    template <class T>
    void operator()(T* owned) const
    {
        release(owned);
    }
};

template <class T>
using GOwned = std::unique_ptr<T, GReleased<&g_object_unref>>;
using GOwnedContext = std::unique_ptr<GMainContext, GReleased<&g_main_context_unref>>;
using GOwnedSource = std::unique_ptr<GSource, GReleased<&g_source_unref>>;
using GOwnedTable = std::unique_ptr<GHashTable, GReleased<&g_hash_table_unref>>;
using GOwnedText = std::unique_ptr<char, GReleased<&g_free>>;
using GOwnedVariant = std::unique_ptr<GVariant, GReleased<&g_variant_unref>>;

/// Where a call of GLib puts its error. For one call; the error is freed with it.
class GErrorSlot {
public:
    GErrorSlot() = default;
    ~GErrorSlot() { g_clear_error(&error_); }
    GErrorSlot(const GErrorSlot&) = delete;
    GErrorSlot& operator=(const GErrorSlot&) = delete;

    operator GError**() { return &error_; }

    /// Null when there was no error.
    const GError* get() const { return error_; }

private:
    GError* error_ = nullptr;
};

} // namespace roost
