#include "app/startup.h"

#include "store/companies.h"
#include "store/data_folder.h"
#include "store/material_types.h"

#include <system_error>

namespace mact {

Done StartUp(AppContext& app) {
    std::error_code ignored;
    if (!std::filesystem::exists(HapContentsFile(app), ignored)) { // an existing one stays, even an empty one
        if (!std::filesystem::exists(DataFolder(app), ignored)) {
            const Done created = app.Files.CreateFolder(DataFolder(app));
            // Another copy that is starting at the same time may have been first.
            if (!created && !IsFolderAt(DataFolder(app))) return created;
        }
        const Done created = CreateDefaultHapContents(app);
        if (!created) return created;
    }
    return RestoreCompany(app);
}
} // namespace mact
