#include "dialogs/pictures.h"
#include "platform/os_files.h"
#include <QString>
