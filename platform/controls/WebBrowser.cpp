#include "platform/controls/WebBrowser.h"

namespace velmora {

void WebBrowser::Navigate(const std::string& url)
{
    if (engine_) engine_->Navigate(url);
}

void WebBrowser::Navigate2(const std::string& url) { Navigate(url); }

void WebBrowser::GoBack()
{
    if (engine_) engine_->GoBack();
}

std::shared_ptr<Document> WebBrowser::Document()
{
    if (!engine_) throw DocumentError("the browser has no engine");
    return engine_->CurrentDocument();
}

}  // namespace velmora
