#include <algorithm>
#include <random>

#include "platform/text/Search.h"
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
    Lines Keys()
    {
        Lines keys;
        for (int i = 1; i <= List().Count(); ++i) keys.push_back(List().Item(i).Key());
        return keys;
    }
};

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

TEST(RecordList, RefusesRowsKeysAndCellsThatCannotBe)
{
    Window window;
    ListView list(window, "list");
    list.Add("k", "", {{"Type", "one"}});
    list.Add("", "", {{"Type", "two"}});
    EXPECT_THROW(list.Add("k", "", {}), ControlError);
    for (const int none : {0, 3}) EXPECT_THROW(list.Item(none), ControlError);
    EXPECT_THROW(list.Item(1).SubItem("Url"), ControlError);
    EXPECT_THROW(list.Add("", "", {{"Type", ""}, {"Type", ""}}), ControlError);
    EXPECT_THROW(list.Add("", "", {{"Url", ""}}), ControlError);
}

/// Rows come, change and go one by one, as the program's do; a stable sort and a plain search tell what is right.
TEST(RecordList, KeepsItsOrderAndFindsItsRowsThroughAnyChanges)
{
    Window window;
    ListView list(window, "list");
    list.IndexBy(1);
    list.Sorted = true;
    std::mt19937 numbers(7);
    const auto word = [&](const char* letters) {
        std::string text;
        for (auto i = numbers() % 3; i > 0; --i) text += letters[numbers() % 4];
        return text;
    };
    std::vector<ListItem*> rows;
    std::map<const ListItem*, std::string> keys;
    const auto sort = [&] {
        std::stable_sort(rows.begin(), rows.end(), [&](const ListItem* a, const ListItem* b) {
            const std::string one = LowerCase(a->Cell(list.SortKey()));
            const std::string other = LowerCase(b->Cell(list.SortKey()));
            return list.SortOrder() == 0 ? one < other : other < one;
        });
    };
    for (int step = 0; step < 3000; ++step) {
        if (step % 100 == 50) list.SortOrder = 1 - list.SortOrder();
        if (step % 100 == 99) list.SortKey = 1 - list.SortKey();
        sort();
        const auto chosen = numbers() % std::max<std::size_t>(1, rows.size());
        if (rows.empty() || (numbers() % 4 == 0 && rows.size() < 60)) {
            const std::string key = word("abab");
            const std::string free = list.Find(key) ? "" : key;
            rows.push_back(&list.Add(free, "", {{"Url", word("abAB")}}));
            keys[rows.back()] = free;
        } else if (numbers() % 6 == 0) {
            keys.erase(rows[chosen]);
            list.Remove(*rows[chosen]);
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(chosen));
        } else if (numbers() % 2 == 0) {
            rows[chosen]->SetSubItem("Url", word("abAB"));
        } else {
            rows[chosen]->SetText(word("xyXY"));
        }
        list.Sort();
        sort();
        std::vector<ListItem*> shown;
        std::vector<ListItem*> wanted;
        for (int i = 1; i <= list.Count(); ++i) shown.push_back(&list.Item(i));
        ASSERT_EQ(shown, rows) << "step " << step;
        const std::string url = word("aBbA");
        std::copy_if(rows.begin(), rows.end(), std::back_inserter(wanted),
                     [&](const ListItem* row) { return EqualIgnoringCase(row->SubItem("Url"), url); });
        ASSERT_EQ(list.RowsWith(url), wanted) << "step " << step;
        for (ListItem* row : rows) {
            ASSERT_EQ(row->Key(), keys[row]) << "step " << step;
            ASSERT_TRUE(keys[row].empty() || list.Find(keys[row]) == row) << "step " << step;
        }
    }
}

}  // namespace velmora::test
