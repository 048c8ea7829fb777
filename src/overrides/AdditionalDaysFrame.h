// The tab for further days on which a new schedule is to hold.
#pragma once

#include "base/LocaleFormats.h"
#include "overrides/OverrideEditor.h"

#include <QFrame>

#include <functional>
#include <string>
#include <vector>

class QDateEdit;
class QPushButton;
class QTreeWidget;

namespace kintar {

class AdditionalDaysFrame final : public QFrame {
public:
    AdditionalDaysFrame(const LocaleFormats& formats, QWidget* parent);

    /// Sets both dates to that day and takes the focus.
    void begin(DateTime today);
    void display(const std::vector<AdditionalDay>& days);

    /// What the operator does. Both are set before the window shows.
    std::function<void(DateTime start, DateTime stop)> onAdd;
    std::function<void(const std::string& key)> onRemove;

private:
    void makeList();
    QDateEdit* newPicker(const char* name, const char* labelName, const QString& caption);
    void removeSelected();

    LocaleFormats formats_;
    QTreeWidget* List1 = nullptr;
    QDateEdit* dtMultiStart = nullptr;
    QDateEdit* dtMultiStop = nullptr;
    QPushButton* cmdAdd2List = nullptr;
    QPushButton* cmdDelList = nullptr;
};

} // namespace kintar
