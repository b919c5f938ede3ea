#include "tests/support/LogicHarness.h"

namespace velmora::test {

class RecordTable : public LogicHarness {
protected:
    /// The operations take any table; this one is not sorted.
    ListView& List() { return Program().ListView1; }
    static RecordItem Record(const std::string& session, const std::string& url)
    {
        return {"Form", session, url, "a.cgi", "x=1", "h", "f"};
    }
    void Store(RecordItem record) { Program().StoreRecord(List(), frmBrowser::StripQuery(record.Url), record); }
    Lines Keys()
    {
        Lines keys;
        for (int i = 1; i <= List().Count(); ++i) keys.push_back(List().Item(i).Key());
        return keys;
    }
};

TEST_F(RecordTable, StoringUnderAKeyThatIsThereReplacesTheRow)
{
    Store(Record("first", "http://h/Page.cgi?A=1"));
    Store(Record("second", "HTTP://h/page.cgi?B=2"));
    EXPECT_EQ(Rows(List()), Lines{"second | Form | HTTP://h/page.cgi?B=2 | a.cgi | x=1 | h | f"});
    EXPECT_EQ(Keys(), Lines{"http://h/page.cgi"});
    EXPECT_EQ(Program().glngNoOfPermanentSession, 1);
}

TEST_F(RecordTable, TheMarkerAsksForAName)
{
    RecordItem record = Record("*sysgen*", "http://h/a");
    Program().StoreRecord(List(), "http://h/a", record);
    EXPECT_EQ(record.Session, "Session1");
    List().Item(1).SetText("My page");
    record = {"Bookmark", "*sysgen*", "http://h/a?q", "http://h/a?q", "", "", ""};
    Program().StoreRecord(List(), "http://h/a", record);
    EXPECT_EQ(record.Session, "My page");
    EXPECT_EQ(Rows(List()), Lines{"My page | Bookmark | http://h/a?q | http://h/a?q"});
    EXPECT_EQ(Program().lngBookmarkId, 1);
    Store(Record("*sysgen*", "http://h/b"));
    EXPECT_EQ(List().Item(2).Text(), "Session2");
}

TEST_F(RecordTable, KeysThatCollideFallBackToTheAddressAndThenToNone)
{
    EXPECT_TRUE(frmBrowser::AddRecordItem(List(), Record("one", "http://h/P?1")));
    EXPECT_FALSE(frmBrowser::AddRecordItem(List(), Record("two", "http://h/P?2")));
    EXPECT_FALSE(frmBrowser::AddRecordItem(List(), Record("three", "http://h/P?2")));
    frmBrowser::AddRecordItem(List(), Record("four", ""));
    frmBrowser::AddRecordItem(List(), Record("five", ""));
    EXPECT_EQ(Keys(), (Lines{"http://h/p", "http://h/P?2", "", "", ""}));
    EXPECT_EQ(Program().glngNoOfPermanentSession, 0);

    OpenRecords(1, 3);
    Press(Program().cmdDelete);
    EXPECT_EQ(List().SelectedItem(), nullptr);
    OpenRecords(1, 4);
    Press(Program().cmdDelete);
    EXPECT_EQ(Keys(), (Lines{"http://h/p", "http://h/P?2", ""}));
    EXPECT_EQ(List().Item(3).Text(), "four");
}

TEST_F(RecordTable, PermanentRowsStaySortedThroughEveryChange)
{
    ListView& list = Program().lvwPermanent;
    const auto names = [&] { return list.Item(1).Text() + list.Item(2).Text(); };
    for (const char* name : {"b", "c"}) frmBrowser::AddRecordItem(list, Record(name, std::string("http://h/") + name));
    EXPECT_EQ(names(), "cb") << "start-up sorts downwards";
    RecordItem record = Record("d", "http://h/b");
    Program().StoreRecord(list, "http://h/b", record);
    EXPECT_EQ(names(), "dc");
    list.Select(&list.Item(2));
    record.Session = "e";
    frmBrowser::UpdateSelectedRecord(list, record);
    EXPECT_EQ(names(), "ed");
}

TEST(RecordList, SortsWithoutRegardToCaseAndKeepsEqualRowsInOrder)
{
    Window window;
    ListView list(window, "list");
    for (const char* text : {"b", "A", "c", "B", "a"}) {
        auto& row = list.Add();
        row.SetText(text);
        row.AddSubItem("Type", std::to_string(list.Count()));
    }
    list.Select(&list.Item(1));
    list.Sorted = true;
    const auto order = [&] {
        std::string texts;
        for (int i = 1; i <= list.Count(); ++i) texts += list.Item(i).Text();
        return texts;
    };
    EXPECT_EQ(order(), "AabBc");
    list.SortOrder = 1;
    EXPECT_EQ(order(), "cbBAa");
    EXPECT_EQ(list.SelectedItem()->Text(), "b") << "the selection stays with its row";
    list.SortKey = 1;
    EXPECT_EQ(order(), "aBcAb");
    list.SelectedItem()->SetKey("k");
    EXPECT_THROW(list.Item(1).SetKey("k"), ControlError);
    list.Remove(*list.Find("k"));
    EXPECT_EQ(list.SelectedItem(), nullptr);
    list.Item(4).SetKey("k");
    EXPECT_EQ(list.Find("k"), &list.Item(4)) << "a key is free again when its row has gone";
    EXPECT_THROW(list.Item(0), ControlError);
    EXPECT_THROW(list.Item(5), ControlError);
    EXPECT_THROW(list.Item(1).SubItem("Url"), ControlError);
    EXPECT_THROW(list.Item(1).AddSubItem("Type", ""), ControlError);
}

}  // namespace velmora::test
