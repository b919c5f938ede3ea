// The program: its parts, wired together.
#pragma once

#include <memory>
#include <string>

#include "platform/Turns.h"
#include "platform/desktop/Desktop.h"
#include "platform/desktop/MainWindowView.h"
#include "platform/desktop/TimerDriver.h"
#include "platform/glib/Callbacks.h"
#include "platform/posix/PosixFiles.h"
#include "platform/sqlite/SqliteProxyTable.h"
#include "platform/webkit/WebKitBrowser.h"
#include "platform/webkit/engine/WebKitProxy.h"
#include "shell/frmBrowser.h"

namespace velmora {

class Program {
public:
    struct Options {
        std::string programFolder;  ///< Where the session folder lies.
        std::string agentFolder;    ///< Where the page agent lies.
        std::string dataFolder;     ///< For cookies and site storage; empty: nothing is kept.
        std::string cacheFolder;
    };

    /// The folders of the user who runs the program.
    static Options UserOptions();

    /// Makes all parts; nothing is shown yet. `dialogs` asks the user's questions, on `desktop` as a
    /// rule. Both must outlive the program.
    Program(Desktop& desktop, Dialogs& dialogs, const Options& options);
    ~Program();

    /// The start-up sequence, announced if it takes long, then the window.
    void Start();

    frmBrowser& Form() { return form_; }
    WebKitBrowser& Engine() { return engine_; }
    MainWindowView& View() { return view_; }

private:
    Desktop& desktop_;
    Callbacks callbacks_;
    Turns turns_{[this](Turns::Action action) { callbacks_.Later(std::move(action)); }};
    PosixFiles files_;
    WebKitProxy proxy_;
    SqliteProxyTable proxyTable_;
    frmBrowser form_;
    WebKitBrowser engine_;
    TimerDriver timer_;
    MainWindowView view_;
};

}  // namespace velmora
