#include <stdexcept>

#include "shell/frmBrowser.h"

namespace velmora {

namespace {

void RequireFields(const std::vector<std::string>& names)
{
    if (names.empty()) throw std::logic_error("the field table was never filled");
}

}  // namespace

bool frmBrowser::GetFieldValue(const std::string& name, std::string& value) const
{
    RequireFields(gstrFieldNames);
    value.clear();
    for (std::size_t i = 0; i < gstrFieldNames.size(); ++i) {
        if (FieldNameMatches(gstrFieldNames[i], name)) {
            value = DecodeFieldText(gstrFieldValues.at(i));
            return true;
        }
    }
    return false;
}

bool frmBrowser::SetFieldValue(const std::string& name, const std::string& value, int occurrence)
{
    RequireFields(gstrFieldNames);
    int matches = 0;
    for (std::size_t i = 0; i < gstrFieldNames.size(); ++i) {
        if (!FieldNameMatches(gstrFieldNames[i], name)) continue;
        ++matches;
        if (occurrence == 0 || occurrence == matches) {
            gstrFieldValues.at(i) = EncodeFieldText(value);
            return true;
        }
    }
    return false;
}

bool frmBrowser::GetFieldValues(const std::string& name, std::vector<std::string>& values) const
{
    RequireFields(gstrFieldNames);
    values.clear();
    for (std::size_t i = 0; i < gstrFieldNames.size(); ++i) {
        if (FieldNameMatches(gstrFieldNames[i], name)) values.push_back(DecodeFieldText(gstrFieldValues.at(i)));
    }
    const bool found = !values.empty();
    if (!found) values.emplace_back();
    return found;
}

}  // namespace velmora
