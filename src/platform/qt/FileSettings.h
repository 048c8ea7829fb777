// The per-user settings file.
#pragma once

#include "platform/Platform.h"

#include <QSettings>
#include <QString>

namespace kintar::platform {

/// Settings in one text file of the user, `$XDG_CONFIG_HOME/Tarnholm_Gates/settings.ini`:
///
///     [Orvane\Kintar]
///     Left=150
///
/// Every read sees what other programs wrote. A save reads the file again under a lock, changes one
/// value and puts the new file in the old one's place: a crash leaves either.
class FileSettings final : public SettingsStore {
public:
    FileSettings() : FileSettings(usualPath()) {}
    explicit FileSettings(QString path);

    static QString usualPath();

    std::string get(std::string_view section, std::string_view key,
                    std::string_view otherwise) override;
    void save(std::string_view section, std::string_view key, std::string_view value) override;

private:
    QString path_;
};

/// The text of a settings file and back. In keys and values a control character, `%`, and a blank
/// at either end are written as `%` and two hexadecimal digits. Lines that are neither a section
/// nor `key=value` are left out.
QByteArray settingsText(const QSettings::SettingsMap& values);
QSettings::SettingsMap settingsOf(const QByteArray& text);

} // namespace kintar::platform
