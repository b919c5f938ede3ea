#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::SetColumns(ListView& list)
{
    struct Column {
        const char* caption;
        Twips width;
    };
    static constexpr Column kColumns[] = {
        {"Record Name", 3500},         {"Record Type", 1200},
        {"Destination Address", 3500}, {"Form Action / Originating Address", 3500},
        {"Post Data", 5000},           {"Header", 1000},
        {"Target Frame", 1000},
    };
    list.ClearColumnHeaders();
    for (const Column& column : kColumns) list.AddColumnHeader(column.caption, column.width);
}

ListView& frmBrowser::CurrentRecordList() { return glngCurTab != 0 ? ListView1 : lvwPermanent; }

void frmBrowser::SSTab1_Click(int PreviousTab)
{
    const bool permanent = PreviousTab != 0;
    glngCurTab = permanent ? 0 : 1;
    cmdSave.Enabled = !permanent;
    cmdFill.Enabled = permanent;
}

void frmBrowser::SortPermanentList(int column)
{
    lvwPermanent.Sorted = false;  // One sort does for column and direction.
    lvwPermanent.SortKey = column;
    lvwPermanent.SortOrder = lvwPermanent.SortOrder() == 0 ? 1 : 0;
    lvwPermanent.Sorted = true;
}

void frmBrowser::lvwPermanent_ColumnClick(const ColumnHeader& header) { SortPermanentList(header.Index - 1); }

}  // namespace velmora
