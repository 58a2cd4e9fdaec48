#include "app/startup.h"

#include "app/data_swap.h"
#include "store/companies.h"
#include "store/data_folder.h"
#include "store/material_types.h"

namespace mact {

Done StartUp(AppContext& app) {
    const Done finished = FinishRestore(app); // first, since it decides what the data folder is
    if (!finished) return finished;
    const Result<bool> hasTable = IsAnythingAt(HapContentsFile(app));
    if (!hasTable) return hasTable.error();
    if (!*hasTable) { // an existing one stays, even an empty one
        const Result<bool> hasFolder = IsAnythingAt(DataFolder(app));
        if (!hasFolder) return hasFolder.error();
        if (!*hasFolder) {
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
