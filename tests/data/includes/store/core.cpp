#include "usage/usage_store.h"
#include "app/startup.h"
#include <QString>
#include "record_file.h"
#include "app/settings.h"
#include "base/text.h"
#include <string>
