#include "platform/desktop/PictureView.h"

#include <gdkmm/texture.h>
#include <glibmm/bytes.h>
#include <glibmm/error.h>

#include "desktop_files.h"

namespace velmora {

PictureView::PictureView(velmora::Picture& control)
{
    const std::string_view file = desktop_files::Find(control.Resource);
    if (file.empty()) return;
    try {
        set_paintable(Gdk::Texture::create_from_bytes(Glib::Bytes::create(file.data(), file.size())));
    } catch (const Glib::Error&) {
        // No reader for the format on this machine: the window does without its picture.
    }
}

}  // namespace velmora
