#include "editor/frmEdit.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

class RecordEditor : public LogicHarness {
protected:
    /// A permanent record of this post data, selected.
    void Open(const std::string& post)
    {
        Keep({"Form", "Login", "http://h/p", "http://h/a.cgi", post, "H: 1\r\n", "main"});
        Restart();
        OpenRecords(0, 1);
    }
    void Edit(const std::function<void(frmEdit&)>& visit)
    {
        InDialog<frmEdit>(visit);
        Press(Program().cmdEdit);
    }
    std::string Post() { return Program().lvwPermanent.Item(1).SubItem("Postdata"); }
};

TEST_F(RecordEditor, ShowsAsManyFieldsAsThereAre)
{
    for (const int count : {60, 20, 61}) {
        std::string post;
        for (int i = 0; i < count; ++i) post += (i ? "&f" : "f") + std::to_string(i) + "=v" + std::to_string(i);
        Open(post);
        Edit([count](frmEdit& editor) {
            EXPECT_EQ(editor.Caption(), "Edit Permanent Record Session");
            EXPECT_FALSE(editor.cmdPermanentOK.Enabled() || editor.txtUrl.Enabled() || editor.txtAction.Enabled());
            for (std::size_t i = 0; i < 60; ++i) {
                const bool isReal = static_cast<int>(i) < count;
                EXPECT_EQ(editor.lblName[i].Caption(), isReal ? "f" + std::to_string(i) : "Blank") << i;
                EXPECT_EQ(editor.txtValue[i].Text(), isReal ? "v" + std::to_string(i) : "") << i;
                EXPECT_EQ(editor.txtValue[i].Enabled(), isReal) << i;
                EXPECT_EQ(editor.txtValue[i].Page(), static_cast<int>(i / 20)) << i;
            }
        });
        EXPECT_EQ(Status(), "Modification is cancelled!");
        EXPECT_EQ(Post(), post);
    }
}

TEST_F(RecordEditor, SavesToRowAndFile)
{
    Open("us%65r=anna+b&pass=%2B&Blank=&flag&last=1");
    Edit([](frmEdit& editor) {
        EXPECT_EQ(editor.lblName[0].Caption(), "us%65r");
        EXPECT_EQ(editor.txtValue[0].Text(), "anna b");
        editor.txtSession.Text = "";
        editor.txtValue[2].Text = "  é&日 ";
        editor.txtValue[3].Text = "";
        Press(editor.cmdOK);
    });
    EXPECT_EQ(Rows(Program().lvwPermanent),
              Lines{" | Form | http://h/p | http://h/a.cgi | us%65r=anna%20b&pass=&Blank=%E9%26%u65E5&last= | "
                    "H: 1\r\n | main"});
    EXPECT_EQ(Status(), "Record session is modified!");
    EXPECT_NE(SessionFile("h_p.xml").find("Blank=%E9%26%u65E5&last=</Postdata>"), std::string::npos);
    Edit([](frmEdit& editor) {
        EXPECT_EQ(editor.txtValue[2].Text(), "é&日");
        editor.txtValue[2].Text = "dropped";
        Press(editor.cmdCancel);
    });
    Edit([](frmEdit& editor) { EXPECT_EQ(editor.txtValue[2].Text(), "é&日"); });
}

TEST_F(RecordEditor, MovesATemporaryRecordWithItsNewValues)
{
    Open("a=old");
    AddTemporary({"Form", "Session1", "http://h/P", "x", "a=1", "", ""});
    Edit([](frmEdit& editor) {
        EXPECT_EQ(editor.Caption(), "Edit Temporary Record Session");
        editor.txtValue[0].Text = "2";
        Press(editor.cmdOK);
    });
    EXPECT_EQ(Program().ListView1.Item(1).SubItem("Postdata"), "a=2");
    EXPECT_EQ(SessionFiles(), Lines{"h_p.xml"}) << "a change of a temporary record writes nothing";
    Edit([](frmEdit& editor) { Press(editor.cmdPermanentOK); });
    EXPECT_EQ(Program().ListView1.Count(), 0);
    EXPECT_EQ(Rows(Program().lvwPermanent), Lines{"Session1 | Form | http://h/P | x | a=2"});
    EXPECT_EQ(SessionFiles(), (Lines{"h_P.xml", "h_p.xml"}));

    AddTemporary({"Form", "Session2", "http://h/q", "x", "a=1", "", ""});
    Edit([](frmEdit& editor) { Press(editor.cmdOK); });
    EXPECT_EQ(Program().ListView1.Count(), 1) << "the button of before moves no further record";
}

TEST_F(RecordEditor, ARecordWithoutFieldsKeepsItsPostData)
{
    Open("a=1&b=2");
    Edit([](frmEdit& editor) { editor.SSTab1.Tab = 2; });
    Program().lvwPermanent.Item(1).SetSubItem("Postdata", "no pair");
    Edit([](frmEdit& editor) {
        EXPECT_EQ(editor.SSTab1.Tab(), 0);
        EXPECT_EQ(editor.lblName[0].Caption(), "Blank") << "no field of another record shows";
        EXPECT_FALSE(editor.txtValue[0].Enabled());
        editor.txtSession.Text = "Renamed";
        Press(editor.cmdOK);
    });
    EXPECT_EQ(Program().lvwPermanent.Item(1).Text(), "Renamed");
    EXPECT_EQ(Post(), "no pair");
}

}  // namespace velmora::test
