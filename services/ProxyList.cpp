#include <exception>

#include "platform/Files.h"
#include "platform/ProxyTable.h"
#include "services/frmProxy.h"

namespace velmora {

void frmProxy::cmdProxy_Click()
{
    const std::string server = GetNextProxy("proxyserver.mdb");
    const std::size_t colon = server.find(':');
    if (colon == std::string::npos) return;
    txtIP.Text = server.substr(0, colon);
    txtPort.Text = server.substr(colon + 1);
}

std::string frmProxy::GetNextProxy(const std::string& strDatabase)
{
    Files& files = platform_.files;
    const std::string path = files.ProgramFolder() + "/" + strDatabase;
    try {
        const auto row = platform_.proxyTable.TakeFirst(path, "Y");
        return row ? row->ip + ":" + row->port : std::string();
    } catch (const std::exception&) {
        // No usable list is the same as a list without a free server.
        return {};
    }
}

}  // namespace velmora
