#include "shell/frmBrowser.h"

namespace velmora {

namespace {

// Given as a name, asks for the row's own name, or for a generated one.
constexpr char kGeneratedName[] = "*sysgen*";

bool IsMainText(const RecordField& field) { return field.text == &RecordItem::Session; }

}  // namespace

void frmBrowser::ReadRecordItem(const ListItem& row, RecordItem& record)
{
    for (const RecordField& field : kRecordFields) {
        record.*field.text = IsMainText(field) ? row.Text() : row.SubItem(field.name);
    }
}

bool frmBrowser::ReadSelectedRecord(const ListView& table, RecordItem& record)
{
    const ListItem* const row = table.SelectedItem();
    if (!row) return false;
    ReadRecordItem(*row, record);
    return true;
}

void frmBrowser::WriteRecordItem(ListItem& row, RecordItem& record)
{
    if (record.Session == kGeneratedName) {
        record.Session = row.Text();
    } else {
        row.SetText(record.Session);
    }
    for (const RecordField& field : kRecordFields) {
        if (!IsMainText(field)) row.SetSubItem(field.name, record.*field.text);
    }
}

bool frmBrowser::UpdateSelectedRecord(ListView& table, RecordItem& record)
{
    ListItem* const row = table.SelectedItem();
    if (!row) return false;
    WriteRecordItem(*row, record);
    table.Sort();
    return true;
}

void frmBrowser::StoreRecord(ListView& table, const std::string& key, RecordItem& record)
{
    if (ListItem* const row = table.Find(key)) {
        WriteRecordItem(*row, record);
        table.Sort();
        return;
    }
    if (record.Session == kGeneratedName) record.Session = "Session" + std::to_string(++lngBookmarkId);
    AddRecordItem(table, record);
    ++glngNoOfPermanentSession;
}

bool frmBrowser::AddRecordItem(ListView& table, const RecordItem& record)
{
    const auto isFree = [&](const std::string& key) { return !key.empty() && !table.Find(key); };
    std::vector<KeyedText> subItems;
    subItems.reserve(std::size(kRecordFields));
    for (const RecordField& field : kRecordFields) {
        if (!IsMainText(field)) subItems.push_back({field.name, record.*field.text});
    }
    const std::string key = StripQuery(record.Url);
    const bool takesNormalKey = isFree(key);
    const std::string otherKey = takesNormalKey || !isFree(record.Url) ? std::string() : record.Url;
    table.Add(takesNormalKey ? key : otherKey, record.Session, subItems);
    table.Sort();
    return takesNormalKey;
}

}  // namespace velmora
