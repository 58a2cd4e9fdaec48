#include "usage/usage_store.h"
#include "app/startup.h"
#include <QString>
#include "record_file.h"
#include "base/settings.h"
#include "store/sheet.h"
#include "dialogs/pictures.h"
#include <string>
