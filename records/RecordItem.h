// One record session.
#pragma once

#include <string>

namespace velmora {

inline constexpr char kTypeForm[] = "Form";
inline constexpr char kTypeBookmark[] = "Bookmark";
inline constexpr char kTypeHome[] = "Home";

/// Seven texts, in the order in which the operations take them. Each may be empty.
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

}  // namespace velmora
