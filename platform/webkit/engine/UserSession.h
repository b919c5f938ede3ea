// What the engine keeps of a user from run to run.
#pragma once

#include <webkit/webkit.h>

#include <string>

namespace velmora {

/// A session with its cookies and site storage in one folder and its cache in another. Both are made,
/// or tightened, for their user's eyes alone. Without a data folder nothing is kept; without a cache
/// folder the cache lies in the data folder.
WebKitNetworkSession* NewUserSession(const std::string& dataFolder, const std::string& cacheFolder);

}  // namespace velmora
