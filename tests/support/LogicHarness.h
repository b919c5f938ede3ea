// The program without a desktop, and a user for it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Turns.h"
#include "shell/frmBrowser.h"
#include "tests/support/CannedPages.h"
#include "tests/support/MemoryDialogs.h"
#include "tests/support/MemoryFiles.h"

namespace velmora::test {

using Lines = std::vector<std::string>;

/// A test starts with the program running on its home page, the window shown, and nothing recorded.
/// A question that the test has not scripted an answer for fails it, and so does an answer left over.
class LogicHarness : public testing::Test {
protected:
    LogicHarness();
    ~LogicHarness() override;

    /// Ends the program without its exit sequence and starts it again on the same files.
    void Restart();
    /// Starts a new program on the present files.
    void Start();

    frmBrowser& Program() { return *program_; }
    CannedBrowser& Engine() { return *engine_; }

    // The user's hands.
    static void Press(CommandButton& button);
    static void Pick(MenuItem& item) { item.Click.Raise(); }
    static void Switch(MenuItem& item, bool on);
    /// Types an address and presses Go.
    void Go(const std::string& url);
    /// Follows a link.
    void Follow(const std::string& url);
    /// The page, or a frame of it, sends a form to an address; what the test says goes out is announced,
    /// and nothing comes back.
    void Send(const std::string& url, const std::string& body = {}, const std::string& headers = {},
              const std::string& target = {}, BrowserObject* frame = nullptr);
    /// Brings the record panel into sight, on a tab, and selects a row of its list, counted from 1.
    void OpenRecords(int tab, int row = 0);
    /// Puts a temporary record into the list and selects it.
    void AddTemporary(const RecordItem& record);
    /// What the user does in the next dialog; one that is left open is closed at its close box.
    template <class Dialog>
    void InDialog(std::function<void(Dialog&)> act)
    {
        dialogs.Visits.push_back([act](Window& window) { act(dynamic_cast<Dialog&>(window)); });
    }

    // What the user sees.
    std::string Status() { return Program().StatusBar1.Panels(1).Text(); }
    /// "name | type | url | action | post data | header | frame", empty texts at the end left out.
    static Lines Rows(ListView& list);
    /// The journal of the pages; emptied by the call.
    Lines Journal();
    /// The boxes and dialogs shown; emptied by the call.
    Lines Shown();

    /// The bytes of a file in the session folder; "none" if there is no such file.
    std::string SessionFile(const std::string& name) const;
    /// The names of the files in the session folder.
    Lines SessionFiles() const;
    /// Puts a permanent record where the program finds it at the next start.
    void Keep(const RecordItem& record);

    MemoryDialogs dialogs;
    MemoryFiles files;
    Files* disk = &files;  ///< What the next start is handed.
    MemoryProxy proxy;
    MemoryProxyTable proxyTable;
    std::map<std::string, CannedPage> site;  ///< What lies at an address.
    std::string statusAtStart;               ///< The status line at the end of the start-up sequence.

private:
    std::unique_ptr<Turns> turns_;
    std::unique_ptr<frmBrowser> program_;
    std::unique_ptr<CannedBrowser> engine_;
};

}  // namespace velmora::test
