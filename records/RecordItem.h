// One record session.
#pragma once

#include <string>

namespace velmora {

inline constexpr char kTypeForm[] = "Form";
inline constexpr char kTypeBookmark[] = "Bookmark";
inline constexpr char kTypeHome[] = "Home";

/// Seven texts. Each may be empty.
struct RecordItem {
    std::string Type;
    std::string Session;   ///< The record's name.
    std::string Url;       ///< The page that holds the form.
    std::string Action;    ///< Where the form is sent.
    std::string Postdata;  ///< name=value pairs joined by "&", names and values escaped.
    std::string Header;
    std::string Frame;

    bool operator==(const RecordItem&) const = default;
};

/// One of the seven: its name in session files and in the rows of the lists.
struct RecordField {
    const char* name;
    std::string RecordItem::*text;
};

/// All of them, in the order of the session files. The rows of the lists have the same order, except that
/// Session is their main text.
inline constexpr RecordField kRecordFields[] = {
    {"Type", &RecordItem::Type},     {"Session", &RecordItem::Session},   {"Url", &RecordItem::Url},
    {"Action", &RecordItem::Action}, {"Postdata", &RecordItem::Postdata}, {"Header", &RecordItem::Header},
    {"Frame", &RecordItem::Frame},
};

/// The column of the lists, counted from 0, that shows the Url.
inline constexpr int kUrlColumn = 2;

}  // namespace velmora
