// The main window and the program's logic: every control, all shared state and all operations.
//
// The operations are listed by subsystem; the code of each lies in its subsystem's folder. No
// operation lets a failure out: what fails ends silently where it is, and what was done stays.
// Positions in texts count from 1, array indexes from 0, rows and status panels from 1; all
// geometry is in twips.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/Dialogs.h"
#include "platform/Platform.h"
#include "platform/controls/Controls.h"
#include "platform/controls/ListView.h"
#include "platform/controls/WebBrowser.h"
#include "records/RecordItem.h"

namespace velmora {

class frmAbout;
class frmBookmark;
class frmEdit;
class frmHome;
class frmProxy;
enum class ElementKind;

class frmBrowser : public Window {
public:
    /// Makes the window with its controls at their design positions; nothing runs before Form_Load.
    /// All that `platform` names must outlive the window.
    explicit frmBrowser(Platform platform);
    ~frmBrowser() override;

    // --- Shell: start-up and exit (shell/StartExit.cpp) -------------------------------------------

    /// The start-up sequence, once, before the window is first shown.
    void Form_Load();
    /// The exit sequence: resets the proxy, asks about temporary records, ends the program.
    void mnuExit_Click();
    /// Puts a dialog in the middle of the screen.
    void CenterForm(Window& form);

    // --- Shell: switches (shell/Switches.cpp) -----------------------------------------------------

    void mnuAutoRecord_Click();
    void mnuPromptFill_Click();
    void mnuAutoHide_Click();
    void mnuAutoClick_Click();
    void mnuManualClick_Click();
    void mnuNoFill_Click();

    // --- Shell: layout and record panel (shell/Layout.cpp) ----------------------------------------

    /// The layout pass; ends silently at a step that a control refuses.
    void Form_Resize();
    void mnuHideRecord_Click();
    void ShowRecordPanel();
    void HideRecordPanel();
    /// Hides the record panel if it is shown and Auto Hide is on.
    void AutoHideRecords();

    // --- Shell: navigation status (shell/NavigationStatus.cpp) ------------------------------------

    void wbMyBrowser_BeforeNavigate2(BeforeNavigate2Event& event);
    void wbMyBrowser_DocumentComplete(BrowserObject& pDisp, const std::string& URL);
    /// Nothing came of a navigation: the status line goes back to the document that stands.
    void wbMyBrowser_NavigationEnded();
    /// Notes the forms of a document that stayed once more.
    void wbMyBrowser_DocumentResumed(BrowserObject& pDisp, const std::string& URL);
    /// Lets the playback look at an address again if one of its records is for a form that has come.
    void wbMyBrowser_FormsAdded(BrowserObject& pDisp, const std::string& URL);
    void wbMyBrowser_CommandStateChange(int Command, bool Enable);
    void Timer1_Timer();
    void cmdBack_Click();
    void mnuWebsite_Click();
    void mnuAbout_Click();

    // --- Capture: comparison of addresses (capture/UrlComparison.cpp) -----------------------------

    /// True if the texts are equal apart from letter case or end in the same file name. Lower-cases
    /// both in place unless they are equal apart from case.
    static bool UrlsMatch(std::string& a, std::string& b);
    /// The file name of an address, without its query. Lower-cases `s` in place.
    static std::string GetUrlFileName(std::string& s);
    /// What stands after the last "/".
    static std::string GetLastSegment(const std::string& s);
    /// The lower-case form of an address, cut before its first "?": the key of a permanent row.
    static std::string StripQuery(const std::string& s);

    // --- Capture: post data codec (capture/PostdataCodec.cpp) -------------------------------------

    /// The value of a hexadecimal digit; any other character gives its code less that of "0".
    static int HexDigitValue(char32_t c);
    static std::string DecodeFieldText(const std::string& s);
    /// Trims blanks at both ends and escapes all but ASCII digits and letters. Not the inverse of
    /// DecodeFieldText: "+" comes back as a blank.
    static std::string EncodeFieldText(const std::string& s);
    /// Throws std::logic_error on a table that no split has ever filled.
    static std::string JoinPostdata(const std::vector<std::string>& names, const std::vector<std::string>& values);
    /// Fills the two tables with the first 60 pairs, undecoded; warns on panel 1 if there are more.
    /// A text without a pair leaves the tables as they were.
    void SplitPostdata(const std::string& s, std::vector<std::string>& names, std::vector<std::string>& values);

    // --- Capture: form action index (capture/FormActionIndex.cpp) ---------------------------------

    /// Adds the actions of a finished document's forms to the index, or resets it to the one entry
    /// "*frame*" for a document with frames. A failure keeps the entries made so far.
    void CollectFormActions(BrowserObject& pDisp, const std::string& URL, int& noOfFormAction,
                            std::vector<std::string>& formActionPage, std::vector<std::string>& formAction);
    /// The raw value after "action=" in a tag, quotes included, up to the next blank or ">".
    static std::string ExtractFormAction(const std::string& strTag);
    /// The action of the first form tag that holds "id=" and the id; of the first at all if the id
    /// is empty. Throws std::runtime_error on a tag that does not end.
    static std::string FindFormTag(const std::string& strHtml, const std::string& strId);

    // --- Capture: submissions (capture/SubmissionCapture.cpp) -------------------------------------

    /// Decides whether a navigation is the submission of a form in the index, and records it.
    void CaptureSubmission(BeforeNavigate2Event& event);
    /// Adds a row to the temporary list and asks whether to edit it. `strAction` and `strPostdata`
    /// may come back changed.
    void AddTemporaryRecord(BrowserObject& pDisp, const std::string& strPageUrl, std::string& strAction,
                            const std::string& strFrame, std::string& strPostdata, const std::string& strHeader);

    // --- Records: the two lists (records/RecordLists.cpp) -----------------------------------------

    /// Sets the seven columns of a record list.
    static void SetColumns(ListView& list);
    /// The list on the tab that is shown.
    ListView& CurrentRecordList();
    void SSTab1_Click(int PreviousTab);
    /// Sorts the permanent list by a column, counted from 0, in the order opposite to the last one.
    void SortPermanentList(int column);
    void lvwPermanent_ColumnClick(const ColumnHeader& header);

    // --- Records: tables (records/RecordTable.cpp) ------------------------------------------------

    static void ReadRecordItem(const ListItem& row, RecordItem& record);
    /// False, and `record` left alone, if no row is selected.
    static bool ReadSelectedRecord(const ListView& table, RecordItem& record);
    /// Replaces a row's fields; its key stays. A Session of "*sysgen*" keeps the row's name and comes
    /// back as that name.
    static void WriteRecordItem(ListItem& row, RecordItem& record);
    static bool UpdateSelectedRecord(ListView& table, RecordItem& record);
    /// Replaces the row of that key or adds one. A Session of "*sysgen*" comes back as the row's name.
    void StoreRecord(ListView& table, const std::string& key, RecordItem& record);
    /// Appends a row. True if it took its normal key, false if its Url, or no key at all.
    static bool AddRecordItem(ListView& table, const RecordItem& record);

    // --- Records: session files (records/SessionFile.cpp) -----------------------------------------

    static std::string BuildSessionXml(const RecordItem& record);
    static std::string BuildHomeXml(const std::string& home);
    /// Never fails. For a Type of "Home" the other fields stay as they were.
    static void ParseSessionXml(const std::string& text, RecordItem& record);
    /// The text between the first <tag> and the first </tag> after it, letter case ignored.
    static std::string GetXmlElement(const std::string& text, const std::string& tag);
    static std::string MakeSessionFileName(const std::string& Url);
    /// The path of the session file of an address.
    std::string SessionFilePath(const std::string& Url);
    /// False, and `text` left alone, if the file could not be read whole or holds nothing.
    bool ReadTextFile(const std::string& path, std::string& text);
    /// Puts a file with the text and a line end after it at the path. A failure is silent and leaves
    /// the file that was there.
    void WriteTextFile(const std::string& path, const std::string& text);

    // --- Records: permanent store (records/PermanentStore.cpp) ------------------------------------

    /// Fills the permanent list from the session folder.
    void LoadPermanentSession();
    void cmdSave_Click();
    void cmdDelete_Click();

    // --- Records: home page and bookmarks (records/HomePage.cpp, records/Bookmarks.cpp) -----------

    void mnuHome_Click();
    void cmdBookmark_Click();
    void RecordBookmark();
    void EditBookmarkRecord(RecordItem& record);

    // --- Playback: form walker (playback/FormWalker.cpp) ------------------------------------------

    /// Looks for the recorded form in the frames of a document, then in the document. "READ" renews
    /// the post data from the form, "WRITE" fills the form and, with Auto Click on, submits it.
    void ProcessDocument(BrowserObject& browser, const std::string& mode, std::string& action, std::string& postdata);
    /// The same for one document; true if a form was found.
    bool ProcessForm(const std::string& mode, Document& document, std::string& action, std::string& postdata);
    /// The decoded value of the first field of a name (lower case); false if there is none. The three
    /// lookups throw std::logic_error on a table that no split has ever filled.
    bool GetFieldValue(const std::string& name, std::string& value) const;
    /// Stores an encoded value in the n-th field of a name, from 1; 0 means the first.
    bool SetFieldValue(const std::string& name, const std::string& value, int occurrence);
    /// The decoded values of all fields of a name; one empty text, and false, if there is none.
    bool GetFieldValues(const std::string& name, std::vector<std::string>& values) const;

    // --- Playback: driver (playback/PlaybackDriver.cpp, playback/AutoClick.cpp) -------------------

    void cmdPlayback_Click();
    void cmdFill_Click();
    /// Whether a permanent record of the address goes to where a form of the document goes.
    bool HasRecordFor(BrowserObject& pDisp, const std::string& URL);
    /// Fills the finished document from the first permanent record of its address.
    void PlayDocument(BrowserObject& pDisp, const std::string& URL);
    /// Clicks the first image button after a recorded text field, or tells the user to click.
    void AutoClickSubmit(Form& form, const std::vector<std::string>& names);
    void AskForClick();

    // --- Editor (editor/RecordEditor.cpp) ---------------------------------------------------------

    void cmdEdit_Click();
    void EditFormRecord(ListView& table, RecordItem& record);

    // --- Services (services/) ---------------------------------------------------------------------

    void wbMyBrowser_NewWindow2(bool& Cancel);
    void mnuBlock_Click();
    void mnuProxy_Click();

    // --- Shared state -----------------------------------------------------------------------------

    int lngSessionId = 0;         ///< Number of the last temporary record.
    int lngBookmarkId = 0;        ///< Number of the last generated bookmark name.
    std::string strLastUrl;       ///< Address of the document that completed last.
    int glngCurTab = 0;           ///< 0: permanent records are shown, 1: temporary ones.
    std::string gstrSessionPath;  ///< The session folder, no slash at its end.
    std::string gstrCurMode;      ///< "Playback" from the first Go on.
    int glngNoOfPermanentSession = 0;
    std::vector<std::string> gstrFieldNames;  ///< Field table; empty until a split fills it.
    std::vector<std::string> gstrFieldValues;
    int glngNoOfPopupBlocked = 0;
    int glngNoOfFormAction = 0;  ///< Live entries of the form action index.
    std::vector<std::string> gstrFormActionPage;
    std::vector<std::string> gstrFormAction;
    bool gbRecordArmed = false;     ///< A submission may be captured.
    std::string gstrLastFilledUrl;  ///< Address that DocumentComplete handled last.

    // --- Controls ---------------------------------------------------------------------------------

    Frame Frame1{*this, "Frame1"};
    CommandButton cmdBack{Frame1, "cmdBack", "Back"};
    CommandButton cmdPlayback{Frame1, "cmdPlayback", "Go"};
    CommandButton cmdHideRecord{Frame1, "cmdHideRecord", "Hide Record"};
    CommandButton cmdRecord{Frame1, "cmdRecord", "Auto Record Off"};
    CommandButton cmdAutoHide{Frame1, "cmdAutoHide", "Auto Hide is On"};
    CommandButton cmdAutoClick{Frame1, "cmdAutoClick", "Auto Click is On"};
    CommandButton cmdBookmark{Frame1, "cmdBookmark", "Bookmark"};
    CommandButton cmdPrompt{*this, "cmdPrompt", "Prompt User is On"};
    Label lblUrl{*this, "lblUrl", "Address:"};
    TextBox txtUrl{*this, "txtUrl", 9.75F};
    WebBrowser wbMyBrowser{*this, "wbMyBrowser"};
    SSTab SSTab1{*this, "SSTab1", {"Permanent Record", "Temporary Record"}};
    ListView lvwPermanent{SSTab1, "lvwPermanent"};
    ListView ListView1{SSTab1, "ListView1"};
    CommandButton cmdEdit{*this, "cmdEdit", "Edit"};
    CommandButton cmdDelete{*this, "cmdDelete", "Delete"};
    CommandButton cmdSave{*this, "cmdSave", "Move Record to Permanent"};
    CommandButton cmdFill{*this, "cmdFill", "Go to"};
    StatusBar StatusBar1{*this, "StatusBar1", 2};
    Timer Timer1;

    MenuItem mnuFile{"mnuFile", "File"};
    MenuItem mnuProxy{"mnuProxy", "Proxy"};
    MenuItem mnuHome{"mnuHome", "Default Home Page"};
    MenuItem mnuSep1{"mnuSep1", "-"};
    MenuItem mnuExit{"mnuExit", "Exit"};
    MenuItem mnuView{"mnuView", "View"};
    MenuItem mnuHideRecord{"mnuHideRecord", "Hide Permanent/Temporary Record", true};
    MenuItem mnuAutoHide{"mnuAutoHide", "Auto Hide Permanent/Temporary Record", true, true};
    MenuItem mnuPlayback{"mnuPlayback", "Playback"};
    MenuItem mnuPromptFill{"mnuPromptFill", "Prompt User before Auto Fill-in Form", true, true};
    MenuItem mnuPlaybackSep1{"mnuPlaybackSep1", "-"};
    MenuItem mnuManualClick{"mnuManualClick", "Auto Fill-in Form (with Manual Click)", true};
    MenuItem mnuAutoClick{"mnuAutoClick", "Auto Fill-in Form (with Auto Click)", true, true};
    MenuItem mnuNoFill{"mnuNoFill", "No auto Fill-in Form", true};
    MenuItem mnuRecord{"mnuRecord", "Record"};
    MenuItem mnuAutoRecord{"mnuAutoRecord", "Auto Record", true};
    MenuItem mnuPopup{"mnuPopup", "Popup"};
    MenuItem mnuBlock{"mnuBlock", "Block pop-up window", true};
    MenuItem mnuHelp{"mnuHelp", "Help"};
    MenuItem mnuWebsite{"mnuWebsite", "Go to Website"};
    MenuItem mnuAbout{"mnuAbout", "About"};

    // --- Dialogs: one instance each, made on first use --------------------------------------------

    frmHome& Home();
    frmProxy& ProxyDialog();
    frmEdit& Edit();
    frmBookmark& Bookmark();

private:
    void PlaceControls();
    void BuildMenu();
    void ConnectEvents();
    /// Runs the handler of a button or a menu item; a failure ends it.
    void Handle(void (frmBrowser::*handler)());
    /// Sets the message line, panel 1.
    void ShowStatus(const std::string& text);
    /// A bookmark can be taken of any page but an empty one.
    void EnableBookmark();
    /// Tells the user to select a record first.
    void AskForSelection();
    /// Sets the session folder and makes it.
    void PrepareSessionFolder();
    /// The names of the files in the session folder; tells the user if it cannot be listed or written.
    std::vector<std::string> ListSessionFolder();
    /// Reads one file of the session folder into the permanent list or the home page.
    void LoadSessionFile(const std::string& name);
    /// Replaces the session file of a record.
    void WriteSessionFile(const RecordItem& record);
    /// Deletes the session file of an address; false if it is still there afterwards.
    bool DeleteSessionFile(const std::string& Url);
    /// Whether a post data has anything to fill a form with: a walk without a pair would go by the pairs
    /// of the record before.
    static bool HasPair(const std::string& postdata);
    void CapturePost(BeforeNavigate2Event& event);
    void CaptureQuery(BeforeNavigate2Event& event);
    /// Makes the record of a submission that matches a noted form, and empties the index.
    void RecordSubmission(BeforeNavigate2Event& event, int i, std::string& strAction, std::string strPostdata);

    /// Whether an undecoded name of the field table is the wanted one, which is in lower case.
    static bool FieldNameMatches(const std::string& fieldName, const std::string& wanted);
    /// The form that passes the comparisons, its elements read or written; null if there is none.
    std::shared_ptr<Form> WalkForms(const std::string& mode, Document& document, std::string& action);
    /// False if the form's first element is no recorded field.
    bool WalkElements(const std::string& mode, Form& form);
    void ReadElement(Element& element, ElementKind kind, const std::string& name, const std::string& recorded);
    void WriteElement(Element& element, ElementKind kind, const std::string& name, const std::string& recorded);
    void SubmitForm(Form& form);

    /// The permanent form records of an address, letter case ignored, in the list's order.
    std::vector<RecordItem> FormRecordsOf(const std::string& URL) const;

    /// Shows the fields of a record in the editor; the number of fields.
    std::size_t ShowFields(const RecordItem& record);
    /// The post data that the editor's fields hold.
    std::string EditedPostdata(std::size_t fields);

    Platform platform_;
    std::unique_ptr<frmHome> frmHome_;
    std::unique_ptr<frmProxy> frmProxy_;
    std::unique_ptr<frmEdit> frmEdit_;
    std::unique_ptr<frmBookmark> frmBookmark_;
};

}  // namespace velmora
