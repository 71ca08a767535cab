// The configuration files as parsed dictionaries. Every call reads the file; it is parsed again
// whenever its bytes differ from those of the parsed copy, so callers see exactly what is on
// disk now, as if every call parsed the file anew.
#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

class ConfigurationFileCache
{
public:
    // The file's top-level dictionary. Nothing when the file is missing; nothing, after one
    // log line naming the file, when it is unreadable, malformed or not a dictionary (the line
    // is written once per version of the file). Safe to call from any thread.
    static std::optional<QVariantMap> dictionaryAt(const QString &path);
};
