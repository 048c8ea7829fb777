#include "tools/docs/WindowsContract.h"

#include <map>
#include <stdexcept>

namespace kintar::docs {

namespace {

constexpr const char* all = R"MD(# The windows

For those who drive the server's windows from a test, or read them with assistive technology. Written by
`kintar-docs windows` from the forms themselves; do not edit it.

## How to find a window and a control

Every control has a name that does not change with language, text or place. It is

- the **accessible description** of the control, on the accessibility bus;
- the **object name** of the control, inside the process.

A member of a control array is named with its index: `Label_1`. The **accessible name** is what a screen
reader says; it follows the text of the control. Rows of lists are the children of the list. A tab strip is
the exception: the toolkit does not pass its control name on. Find its pages, which have the role `page tab`,
by their captions.

A window is found by its title. Titles change with what the window shows: search by control instead where
that is possible. There is one window of each kind, for all clients.

`scripts/with-server` gives a desktop on which all of this works. With Debian's `python3-pyatspi`:

```python
import pyatspi

def find(node, control):
    for child in node:
        if child is not None:
            found = child if child.description == control else find(child, control)
            if found is not None:
                return found

server = next(program for program in pyatspi.Registry.getDesktop(0) if program.name == "Kintar3")
find(server, "cmdIgnore").queryAction().doAction(0)          # press a button
find(server, "Text_0").queryEditableText().setTextContents("Byron")
print(find(server, "Label_1").name)
```

A window that has not been opened yet has no controls. The photo window's labels react to the mouse alone
(a double-click); click into their extents for that.

## Boxes and notices

| window | title | what it is |
|---|---|---|
| `MsgBox` | Kintar3 | one of the three messages of a start-up that failed, with the button OK. The call that caused it is answered when start-up has ended; other clients are served meanwhile |
| `WriteFailedNotice` | Kintar3 | a change could not be written to the database; waits for nobody |

## The columns below

*At the start* is how the form is made: as it stands before its first client and its site have filled it.
Captions that the site's table of texts supplies replace those below. A timer cannot be seen; it is listed
because the window's behaviour is described by it.

)MD";

const std::map<std::string, const char*>& forms() {
    static const std::map<std::string, const char*> texts{
        {"frmKintar",
         "The photo of the cardholder. Appears when an `objKintar` is created, and again, if it "
         "was "
         "closed, with\nthe next `ID`. Never takes the keyboard focus. Title: last name, comma, "
         "first "
         "name. A double-click on\n`Label_1` or `Label_2` shows `lblEnable` and `lblDisAble` to an "
         "operator with the right; while a newer event\nwaits to be shown they are hidden and "
         "clicks do "
         "nothing. `lblStatus` says whether a card command was sent.\nClosing it unloads it.\n"},
        {"frmNameSearch",
         "The name search. Appears when `objNameSearch.LocGrp` is set. Title: `LocName`, colon, "
         "two "
         "blanks, Search\nNames; with a name selected, the name stands before it. Mode 0 shows "
         "`cmdInOut`, the modes above show `cmdOK`\nin its place. Enter in a text box searches. "
         "Closing "
         "it by the title bar or Escape is Cancel; it is hidden then,\nand stays loaded.\n"},
        {"frmAlarmPopUp",
         "The alarm. Appears when `objAlarmPopUp.EventString` is set; reading `Enabled` makes it, "
         "hidden. Never takes\nthe keyboard focus, and takes no key for a second after each alarm. "
         "Title: text number 456, two blanks,\n`LocName`. The buttons and the ticked box hide "
         "it.\n"},
        {"frmOvrSchedule", "The editor of scheduled overrides. Appears when `objOverride` is told "
                           "to show it; `Done` is "
                           "true once it has\nclosed. `Frame_2` shows an error in place of the "
                           "other frames, and only "
                           "`cmdErrOK` can be pressed then. The\npage Additional Days is there for "
                           "a new override alone. "
                           "Option buttons that are not among the allowed commands\nare hidden. "
                           "Enter is OK, Escape and "
                           "the title bar are Cancel.\n"},
        {"frmSelName", "The criteria of the advanced search, opened from the name search. One page "
                       "each of names, "
                       "user-defined fields,\ncards and skills; the last is there only where the "
                       "group has skills. "
                       "`mskUDFEdit` appears in the cell of `grdUdf`\nthat is being edited. OK "
                       "fills the list of the "
                       "name search and closes; where that fails it stays, and\n`lblStatus` says "
                       "why. Escape and the "
                       "title bar are Cancel.\n"},
        {"frmInOut", "The In / Out board, opened from the name search by `cmdInOut`. A click on a "
                     "row puts its last "
                     "use into the title\nand its user-defined fields into `Text`, which is shown "
                     "where the operator "
                     "may read them. Refreshed every\nminute. Closing it unloads it.\n"},
        {"frmPrnRpt", "A report on the screen. Printing never shows it, and no client can open it "
                      "over the bus: it is "
                      "there for\nother windows of the server. The title becomes the report's own. "
                      "Closing it unloads "
                      "it.\n"}};
    return texts;
}

} // namespace

std::string windowsText() {
    return all;
}

std::string formText(const std::string& form) {
    const auto found = forms().find(form);
    if (found == forms().end()) {
        throw std::logic_error("nobody has written what the form " + form + " is for");
    }
    return found->second;
}

} // namespace kintar::docs
