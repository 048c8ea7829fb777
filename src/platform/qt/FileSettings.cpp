#include "platform/qt/FileSettings.h"

#include <QFileInfo>
#include <QIODevice>
#include <QStandardPaths>

#include <system_error>

namespace kintar::platform {

namespace {

/// A file larger than this is not one of ours; it is neither read nor replaced.
constexpr qint64 largestFile = 1 << 20;

QString qtKey(std::string_view section, std::string_view key) {
    // The toolkit separates groups with slashes; sections are written with backslashes.
    QString path = QString::fromUtf8(section.data(), static_cast<qsizetype>(section.size()));
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return path + QLatin1Char('/') +
           QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

bool isWritten(unsigned char c, bool atEnd) {
    return c >= ' ' && c != '%' && c != 0x7F && !(atEnd && c == ' ');
}

/// The key as the file spells it; programs differ in the case of letters.
QString spelled(const QSettings& settings, const QString& key) {
    for (const QString& known : settings.allKeys()) {
        if (known.compare(key, Qt::CaseInsensitive) == 0) {
            return known;
        }
    }
    return key;
}

QByteArray escaped(const QString& text) {
    const QByteArray plain = text.toUtf8();
    QByteArray result;
    for (qsizetype i = 0; i < plain.size(); ++i) {
        const auto c = static_cast<unsigned char>(plain[i]);
        if (isWritten(c, i == 0 || i + 1 == plain.size())) {
            result += plain[i];
        } else {
            result += '%' + QByteArray(1, plain[i]).toHex();
        }
    }
    return result;
}

QByteArray escapedKey(const QString& key) {
    QByteArray name = escaped(key).replace('=', "%3d");
    if (name.startsWith('[') || name.startsWith(';') || name.startsWith('#')) {
        name = '%' + name.left(1).toHex() + name.mid(1);
    }
    return name;
}

QString unescaped(const QByteArray& text) {
    return QString::fromUtf8(QByteArray::fromPercentEncoding(text));
}

bool readSettings(QIODevice& file, QSettings::SettingsMap& values) {
    if (file.size() > largestFile) {
        return false;
    }
    values = settingsOf(file.readAll());
    return true;
}

bool writeSettings(QIODevice& file, const QSettings::SettingsMap& values) {
    const QByteArray text = settingsText(values);
    return file.write(text) == text.size();
}

QSettings::Format ourFormat() {
    static const QSettings::Format format =
        QSettings::registerFormat(QStringLiteral("ini"), readSettings, writeSettings);
    return format;
}

} // namespace

QByteArray settingsText(const QSettings::SettingsMap& values) {
    QByteArray text;
    QString section;
    // The map is sorted by section and key.
    for (auto value = values.begin(); value != values.end(); ++value) {
        const qsizetype slash = value.key().lastIndexOf(QLatin1Char('/'));
        const QString own = value.key().left(std::max<qsizetype>(slash, 0));
        if (own != section) {
            section = own;
            QString shown = section;
            text += (text.isEmpty() ? "[" : "\n[") +
                    escaped(shown.replace(QLatin1Char('/'), QLatin1Char('\\'))) + "]\n";
        }
        text += escapedKey(value.key().mid(slash + 1)) + '=' + escaped(value->toString()) + '\n';
    }
    return text;
}

QSettings::SettingsMap settingsOf(const QByteArray& text) {
    QSettings::SettingsMap values;
    QString section;
    for (const QByteArray& raw : text.split('\n')) {
        const QByteArray line = raw.trimmed();
        const qsizetype equals = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']')) {
            section = unescaped(line.mid(1, line.size() - 2));
            section.replace(QLatin1Char('\\'), QLatin1Char('/'));
        } else if (equals > 0 && !line.startsWith(';') && !line.startsWith('#')) {
            const QString key = unescaped(line.left(equals).trimmed());
            values.insert(section.isEmpty() ? key : section + QLatin1Char('/') + key,
                          unescaped(line.mid(equals + 1).trimmed()));
        }
    }
    return values;
}

FileSettings::FileSettings(QString path) : path_(std::move(path)) {}

QString FileSettings::usualPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/Tarnholm_Gates/settings.ini");
}

std::string FileSettings::get(std::string_view section, std::string_view key,
                              std::string_view otherwise) {
    // A fresh object looks at the file again, so that other programs' changes are seen.
    const QSettings settings(path_, ourFormat());
    const QVariant value = settings.value(spelled(settings, qtKey(section, key)));
    return value.isValid() ? value.toString().toStdString() : std::string(otherwise);
}

void FileSettings::save(std::string_view section, std::string_view key, std::string_view value) {
    const auto fail = [this] {
        throw std::system_error(std::make_error_code(std::errc::io_error),
                                "cannot write the settings file " + path_.toStdString());
    };
    if (QFileInfo(path_).size() > largestFile) {
        fail(); // the toolkit would take it for empty, and replace it
    }
    QSettings settings(path_, ourFormat());
    settings.setValue(spelled(settings, qtKey(section, key)),
                      QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size())));
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        fail();
    }
}

} // namespace kintar::platform
