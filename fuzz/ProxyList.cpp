// A file in the place of the list of proxy servers: the server that comes of it, and what the browser is told.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "fuzz/Fuzz.h"
#include "platform/sqlite/SqliteProxyTable.h"
#include "services/frmProxy.h"

namespace velmora::fuzz {

namespace {

class FolderOfOneList : public test::MemoryFiles {
public:
    FolderOfOneList() { std::filesystem::create_directory(folder_); }
    ~FolderOfOneList() override { std::filesystem::remove_all(folder_); }
    FolderOfOneList(const FolderOfOneList&) = delete;
    FolderOfOneList& operator=(const FolderOfOneList&) = delete;
    std::string ProgramFolder() override { return folder_; }

private:
    const std::string folder_ =
        std::filesystem::temp_directory_path().string() + "/velmora-fuzz-" + std::to_string(getpid());
};

}  // namespace

void Try(const std::string& input)
{
    static FolderOfOneList folder;
    std::ofstream(folder.ProgramFolder() + "/proxyserver.mdb", std::ios::binary) << input;
    Turns turns;
    test::MemoryDialogs dialogs;
    test::MemoryProxy proxy;
    SqliteProxyTable table;
    Platform platform{turns, dialogs, folder, proxy, table};
    frmProxy dialog(platform);
    for (int i = 0; i < 3; ++i) {
        dialog.cmdProxy.Click.Raise();
        dialog.cmdOK.Click.Raise();
        Expect(dialog.txtIP.Text().find(':') == std::string::npos, "a port is no part of the address");
        Expect(proxy.Calls.back() == "3 http=" + dialog.txtIP.Text() + ":" + dialog.txtPort.Text(), "both are applied");
    }
}

}  // namespace velmora::fuzz
