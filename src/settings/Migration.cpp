#include "settings/Migration.h"

#include "foundation/NSFileManager.h"
#include "foundation/NSUserDefaults.h"
#include "log/Log.h"
#include "settings/Settings.h"

namespace {

constexpr const char* formerDomains[] = { "com.merrowen.kelmora", "com.local.kelmora" };

struct Renaming {
    const char* former;
    const char* present;
};
constexpr Renaming folders[] = { { "Kelmora", "Vantry" }, { "Kelmora-Recovery", "Vantry-Recovery" } };

/// The store is written before the source goes, so that a crash between the two loses nothing.
void migrateDefaults()
{
    auto store = NSUserDefaults::standard();
    if (store.objectForKey("barSize"))
        return;
    for (const char* domain : formerDomains) {
        const auto values = NSUserDefaults::persistentDomainForName(domain);
        if (!values)
            continue;
        store.setValuesForKeys(*values);
        NSUserDefaults::removePersistentDomainForName(domain);
        Log::debug("settings: migrated ", values->size(), " values from ", domain);
        return;
    }
}

void migrateSupportFolders()
{
    auto& files = NSFileManager::defaultManager();
    const std::string support = files.applicationSupportDirectory();
    for (const auto& [former, present] : folders) {
        const std::string from = support + '/' + former;
        const std::string to = support + '/' + present;
        if (!files.fileExists(from) || files.fileExists(to))
            continue;
        if (const auto error = files.moveItem(from, to))
            Log::debug("settings: could not move ", former, ": ", error->localizedDescription);
        else
            Log::debug("settings: moved ", former, " support folder to ", present);
    }
}

}

void Settings::migrateLegacyState()
{
    migrateDefaults();
    migrateSupportFolders();
}
