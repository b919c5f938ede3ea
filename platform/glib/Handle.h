// Memory of glib and of all that is built on it, held so that it is given back.
#pragma once

#include <glib-object.h>

#include <memory>
#include <string>

namespace velmora {

/// What a function hands over to its caller; the last copy of the handle gives it back.
template <class T, class Release = void (*)(gpointer)>
std::shared_ptr<T> Owned(T* object, Release release = g_object_unref)
{
    return object ? std::shared_ptr<T>(object, release) : nullptr;
}

/// A share in an object that has other owners, or in a new widget, which has none yet.
template <class T>
std::shared_ptr<T> Held(T* object)
{
    return Owned(static_cast<T*>(g_object_ref_sink(object)));
}

/// A text that a function hands over; empty if it gives none.
inline std::string OwnedText(char* text)
{
    const auto held = Owned(text, g_free);
    return held ? held.get() : "";
}

}  // namespace velmora
