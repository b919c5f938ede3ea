#include <optional>

#include "records/frmBookmark.h"
#include "records/frmHome.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

class Bookmarks : public LogicHarness {
protected:
    /// The user names the bookmark, or cancels where there is no name.
    void Bookmark(const std::optional<std::string>& name)
    {
        Program().glngNoOfFormAction = 1;
        InDialog<frmBookmark>([=, this](frmBookmark& dialog) {
            EXPECT_EQ(Status(), "Bookmark (" + dialog.txtSession.Text() + ") is recorded!");
            EXPECT_FALSE(dialog.txtUrl.Enabled() || dialog.txtAction.Enabled());
            if (name) dialog.txtSession.Text = *name;
            Press(name ? dialog.cmdOK : dialog.cmdCancel);
        });
        Press(Program().cmdBookmark);
        EXPECT_EQ(Shown(), Lines{"dialog Edit Bookmark"});
        EXPECT_EQ(Program().glngNoOfFormAction, 0);
    }
    Lines Permanent() { return Rows(Program().lvwPermanent); }
};

TEST_F(Bookmarks, AreThereBeforeTheirNameIsAskedAndRenamedInListAndFile)
{
    Go("http://h/News?id=1");
    OpenRecords(1);
    Bookmark(std::nullopt);
    EXPECT_EQ(Permanent(), Lines{"Session1 | Bookmark | http://h/News?id=1 | http://h/News?id=1"});
    EXPECT_EQ(Status(), "Modification is cancelled!");
    EXPECT_EQ(Program().SSTab1.Tab(), 0);
    EXPECT_EQ(Program().lvwPermanent.SelectedItem(), Program().lvwPermanent.Find("http://h/news"));
    EXPECT_NE(SessionFile("h_News_id_1.xml").find("<Session>Session1</Session>"), std::string::npos);
    Bookmark("Daily <news>");
    EXPECT_EQ(Status(), "Record session is modified!");
    EXPECT_NE(SessionFile("h_News_id_1.xml").find("<Session>Daily <news></Session>"), std::string::npos);
    Bookmark(std::nullopt);
    EXPECT_EQ(Status(), "Modification is cancelled!");
    EXPECT_EQ(Permanent(), Lines{"Daily <news> | Bookmark | http://h/News?id=1 | http://h/News?id=1"});
    Bookmark("");
    EXPECT_EQ(Permanent(), Lines{" | Bookmark | http://h/News?id=1 | http://h/News?id=1"});
    EXPECT_EQ(Program().lngBookmarkId, 1);
}

TEST_F(Bookmarks, TakeTheRowOfAFormRecordOfTheirAddress)
{
    Keep({"Form", "Login", "http://h/p?a", "http://h/x.cgi", "u=1", "H: 1\r\n", "f"});
    Restart();
    Go("http://h/P");
    Bookmark(std::nullopt);
    EXPECT_EQ(Permanent(), Lines{"Login | Bookmark | http://h/P | http://h/P"});
    EXPECT_EQ(SessionFiles(), (Lines{"h_P.xml", "h_p_a.xml"}));
    Restart();
    EXPECT_EQ(Permanent().size(), 2u) << "the form record of the other address comes back from its file";
}

TEST_F(Bookmarks, NeedAPage)
{
    EXPECT_TRUE(Program().cmdBookmark.Enabled());
    for (const char* none : {"about:blank", ""}) {
        Follow(none);
        EXPECT_FALSE(Program().cmdBookmark.Enabled());
    }
    Follow("http://h/");
    EXPECT_TRUE(Program().cmdBookmark.Enabled());
    Program().strLastUrl.clear();
    Press(Program().cmdBookmark);
    EXPECT_EQ(Permanent(), Lines{});
}

class HomePage : public LogicHarness {};

TEST_F(HomePage, IsKeptInItsFileForTheNextStart)
{
    const auto setHome = [this](const std::string& home, bool save) {
        InDialog<frmHome>([=](frmHome& dialog) {
            dialog.txtHome.Text = home;
            Press(save ? dialog.cmdOK : dialog.cmdCancel);
        });
        Pick(Program().mnuHome);
        EXPECT_EQ(Shown(), Lines{"dialog Default Home Page Setup"});
    };
    EXPECT_EQ(Program().txtUrl.Text(), "velmora://guide/");
    setHome("http://new/", true);
    EXPECT_EQ(Status(), "Setting is updated");
    EXPECT_EQ(Engine().Visited.back(), "velmora://guide/");
    setHome("http://draft/", false);
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(SessionFile("Velmora.xml"), frmBrowser::BuildHomeXml("http://new/") + "\r\n");
    Restart();
    EXPECT_EQ(Program().txtUrl.Text(), "http://new/");
    EXPECT_EQ(Engine().Visited.back(), "http://new/");
    EXPECT_EQ(statusAtStart, "0 Permanent Record");
}

}  // namespace velmora::test
