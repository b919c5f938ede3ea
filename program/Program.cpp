#include "program/Program.h"

#include <gtkmm/widget.h>

#include "platform/desktop/StartWindow.h"
#include "platform/posix/Folders.h"

namespace velmora {

Program::Options Program::UserOptions()
{
    const std::string program = FolderOfRunningProgram();
    // The engine makes it, before the session folder is looked for.
    const std::string data = std::string(g_get_user_data_dir()) + "/velmora";
    return {.programFolder = FolderOfSession(program, data),
            .agentFolder = program + "/agent",
            .dataFolder = data,
            .cacheFolder = std::string(g_get_user_cache_dir()) + "/velmora"};
}

Program::Program(Desktop& desktop, Dialogs& dialogs, const Options& options)
    : desktop_(desktop), files_(options.programFolder),
      form_(Platform{.turns = turns_, .dialogs = dialogs, .files = files_, .proxy = proxy_, .proxyTable = proxyTable_}),
      engine_(
          form_.wbMyBrowser, dialogs, turns_,
          {.agentFolder = options.agentFolder, .dataFolder = options.dataFolder, .cacheFolder = options.cacheFolder}),
      timer_(form_.Timer1), view_(form_, desktop, [this](WebBrowser&) { return Glib::wrap(engine_.Widget()); })
{
    proxy_.Attach(engine_.Session());
    files_.WriteFailed = [&dialogs](const std::string& why) {
        dialogs.Tell("A change was not kept: " + why + ". Mend that, then make the change again.");
    };
}

Program::~Program() { proxy_.Attach(nullptr); }

void Program::Start()
{
    const StartWindow announced(desktop_);
    form_.Form_Load();
    view_.Show();
}

}  // namespace velmora
